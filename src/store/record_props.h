#pragma once

// Property numbers of the stored records. A property id is the number in
// the high 16 bits and the value type in the low 16 bits.

#include <cstdint>

#include "platform/win_types.h"

namespace qb {

// Time entries.
inline constexpr std::uint16_t kPropDate = 1001;
inline constexpr std::uint16_t kPropClient = 1002;
inline constexpr std::uint16_t kPropProject = 1003;
inline constexpr std::uint16_t kPropPhase = 1004;
inline constexpr std::uint16_t kPropTask = 1005;
inline constexpr std::uint16_t kPropDuration = 1006;
inline constexpr std::uint16_t kPropCurrency = 1007;
inline constexpr std::uint16_t kPropRate = 1008;
inline constexpr std::uint16_t kPropBillable = 1009;
inline constexpr std::uint16_t kPropPaid = 1010;
inline constexpr std::uint16_t kPropNotes = 1012;
inline constexpr std::uint16_t kPropOldStartTime = 1013;
inline constexpr std::uint16_t kPropBillTo = 1014;
inline constexpr std::uint16_t kPropCustom1 = 1015;
inline constexpr std::uint16_t kPropCustom2 = 1016;
inline constexpr std::uint16_t kPropCustom3 = 1017;
inline constexpr std::uint16_t kPropRateType = 1018;

// List items and master data.
inline constexpr std::uint16_t kPropText = 1101;      // item text, project, task or contact name
inline constexpr std::uint16_t kPropListKind = 1102;  // also the rate type of a rate
inline constexpr std::uint16_t kPropLayout = 1103;
inline constexpr std::uint16_t kPropClientId = 1201;
inline constexpr std::uint16_t kPropRateDescription = 1202;
inline constexpr std::uint16_t kPropRateFlag = 1203;
inline constexpr std::uint16_t kPropNextClientId = 1404;

// Entry timers; their note, client, project and task use the entry's numbers.
inline constexpr std::uint16_t kPropTimerSlot = 1501;
inline constexpr std::uint16_t kPropTimerState = 1502;
inline constexpr std::uint16_t kPropTimerStart = 1503;
inline constexpr std::uint16_t kPropTimerElapsed = 1504;
inline constexpr std::uint16_t kPropTimerResumed = 1505;

// Contacts of the system's own address book.
inline constexpr std::uint16_t kPropFileAs = 0x4013;
inline constexpr std::uint16_t kPropCompany = 0x3A16;

inline constexpr std::uint32_t kDateSort = makePropId(kPropDate, CEVT_FILETIME);
inline constexpr std::uint32_t kClientNameSort = makePropId(kPropClient, CEVT_LPWSTR);
inline constexpr std::uint32_t kListKindSort = makePropId(kPropListKind, CEVT_UI2);
inline constexpr std::uint32_t kTextSort = makePropId(kPropText, CEVT_LPWSTR);
inline constexpr std::uint32_t kClientIdSort = makePropId(kPropClientId, CEVT_UI4);
inline constexpr std::uint32_t kTimerSlotSort = makePropId(kPropTimerSlot, CEVT_UI2);
inline constexpr std::uint32_t kFileAsSort = makePropId(kPropFileAs, CEVT_LPWSTR);

}  // namespace qb
