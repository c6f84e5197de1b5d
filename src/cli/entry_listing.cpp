#include "cli/entry_listing.h"

#include "cli/cli_text.h"
#include "entry/entry_amount.h"
#include "platform/string_printf.h"
#include "store/time_entry.h"

namespace qb {
namespace {

std::string startColumn(const TimeEntry& e) {
    if (!hasStartTime(e)) return std::string();
    return isoDateTimeMillis(e.date).substr(11, 5);
}

}  // namespace

const char* entryListingHeader() {
    return "id\tdate\tstart\tclient\tproject\tphase\ttask\tduration\tbillable\tpaid\tcurrency\trate"
           "\t"
           "rateType\tamount\tbillTo\tcustom1\tcustom2\tcustom3\n";
}

std::string entryListingRow(const TimeEntry& e, const Settings& settings) {
    std::string o;
    if (e.recordOid != 0) o += std::to_string(e.recordOid);
    o += "\t" + isoDate(e.date) + "\t" + startColumn(e) + "\t" + u8(e.client) + "\t" +
         u8(e.project) + "\t" + u8(e.phase) + "\t" + u8(e.task) + "\t" +
         stringPrintf("%.2f", e.duration * 0.01) + "\t" + (e.billable ? "Y" : "N") + "\t" +
         (e.paid ? "Y" : "N") + "\t" + u8(e.currency) + "\t" + stringPrintf("%.2f", e.rate * 0.01) +
         "\t" + std::to_string(e.rateType) + "\t" + stringPrintf("%.2f", EntryAmount(e, settings)) +
         "\t" + u8(e.billTo) + "\t" + u8(e.custom1) + "\t" + u8(e.custom2) + "\t" + u8(e.custom3) +
         "\n";
    return o;
}

}  // namespace qb
