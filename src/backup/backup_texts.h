#pragma once

// The texts of the backup and archive feature, as the user sees them: the
// progress dialog's lines and the messages after the work.

#include <string>
#include <string_view>

namespace qb {

inline constexpr std::u16string_view kStorageFullText =
    u"The storage device is full. Please save to a different storage device.";
inline constexpr std::u16string_view kBackupFilterText = u"Backup Files (*.qrb)|*.qrb|";
inline constexpr std::u16string_view kBackupExtension = u"qrb";
inline constexpr std::u16string_view kBackupFailedText =
    u"Backup has failed. Please make sure you have enough space on the storage device.";
inline constexpr std::u16string_view kRestoreFailedText =
    u"Restore has failed. Please select a different backup and try again.";
inline constexpr std::u16string_view kUnsupportedBackupText =
    u"This backup file is not supported and cannot be used to restore data. Please select a "
    u"different backup file.";
inline constexpr std::u16string_view kDataText = u"Data";
inline constexpr std::u16string_view kClientDataOnlyText = u"Client Data Only";

// The progress dialog: its first line while backing up or restoring, and
// the second line with the running number.
inline constexpr std::u16string_view kBackupProgressText =
    u"Please wait while backup is in progress. You must not turn off the computer. This may "
    u"take a few minutes.";
inline constexpr std::u16string_view kRestoreProgressText =
    u"Data restore is in progress. Please do not turn off the computer. Please wait...";
std::u16string backingUpRecordText(long number);  // "Backing up record %d..."

inline constexpr std::u16string_view kArchiveFilterText = u"Archive Files (*.qra)|*.qra|";
inline constexpr std::u16string_view kArchiveExtension = u"qra";
inline constexpr std::u16string_view kArchiveFailedText =
    u"Archive operation has failed. Please make sure you have enough space on storage device "
    u"and try again.";
inline constexpr std::u16string_view kArchiveTooOldText =
    u"Archive file cannot be loaded. The file may be created by Quillarbor prior to version "
    u"2.3.";
inline constexpr std::u16string_view kArchiveDataOnlyText =
    u"Only Archive file with data can be restored.";
inline constexpr std::u16string_view kArchiveRestoredText = u"Archive file has been restored.";

// The choices of the archive dialog's "Type:" list, by index.
inline constexpr std::u16string_view kArchiveTypeRangeText = u"Entries of a date range";
inline constexpr std::u16string_view kArchiveTypeClientsText = u"Clients";

// Restoring into a store that holds entries asks first; a date-range
// archive is not a backup and is sent to Archive > Load before anything is
// added; the end says what was added.
inline constexpr std::u16string_view kArchiveGivenToRestoreText =
    u"This file is an archive of time entries, not a backup. Please load it with Archive > Load.";
// "Restoring this backup adds 12 entries to the 40 already here. Do you want to continue?"
std::u16string restoreQuestion(long adding, long present);
// "Restore added 12 entries and 3 clients."
std::u16string restoreDoneText(long entries, long clients);

// Archive with "Delete when archived": the question before, with the count,
// and what was done. The archive's type is 0 for a date range, 1 for clients.
std::u16string archiveDeleteQuestion(int archiveType, long count);
std::u16string archiveDoneText(int archiveType, long count, bool deleted);

enum class FeatureIcon { kInformation, kExclamation, kStop };

struct FeatureMessage {
    std::u16string_view text;  // empty: no message
    FeatureIcon icon = FeatureIcon::kStop;
};

// What the user is told after a restore or an archive load with that result.
FeatureMessage restoreMessage(int result);
FeatureMessage loadArchiveMessage(int result);

}  // namespace qb
