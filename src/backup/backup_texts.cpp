#include "backup/backup_texts.h"

#include "backup/backup_progress.h"
#include "backup/backup_writer.h"
#include "entry/done_texts.h"

namespace qb {

std::u16string backingUpRecordText(long number) {
    return u"Backing up record " + numberText(number) + u"...";
}

std::u16string restoreQuestion(long adding, long present) {
    return u"Restoring this backup adds " + countText(adding, u"entry", u"entries") + u" to the " +
           numberText(present) + u" already here. Do you want to continue?";
}

std::u16string restoreDoneText(long entries, long clients) {
    return u"Restore added " + countText(entries, u"entry", u"entries") + u" and " +
           countText(clients, u"client", u"clients") + u".";
}

std::u16string archiveDeleteQuestion(int archiveType, long count) {
    if (archiveType == 1) {
        return u"Archiving deletes " + countText(count, u"client", u"clients") +
               u" with their projects, tasks, contacts and rates from this data file once the "
               u"archive is written. Time entries are preserved. Do you want to continue?";
    }
    return u"Archiving deletes " + countText(count, u"entry", u"entries") +
           u" from this data file once the archive is written. Do you want to continue?";
}

std::u16string archiveDoneText(int archiveType, long count, bool deleted) {
    const std::u16string what = archiveType == 1 ? countText(count, u"client", u"clients")
                                                 : countText(count, u"entry", u"entries");
    return u"Archived " + what + (deleted ? u" and deleted them from this data file." : u".");
}

FeatureMessage restoreMessage(int result) {
    switch (result) {
        case kRestoreFailed:
            return {kRestoreFailedText, FeatureIcon::kStop};
        case kRestoreUnsupported:
            return {kUnsupportedBackupText, FeatureIcon::kStop};
        default:
            return {};
    }
}

FeatureMessage loadArchiveMessage(int result) {
    switch (result) {
        case kRestoreDone:
            return {kArchiveRestoredText, FeatureIcon::kInformation};
        case kRestoreFailed:
            return {kArchiveTooOldText, FeatureIcon::kStop};
        case kRestoreWrongKind:
            return {kArchiveDataOnlyText, FeatureIcon::kExclamation};
        default:
            return {};
    }
}

void ProgressDisplay::start(long total) {
    total_ = total;
    position_ = 0;
    number_ = 1;
    line_ = backingUpRecordText(number_);
    changed();
}

void ProgressDisplay::step() {
    line_ = backingUpRecordText(number_++);
    if (position_ < total_) ++position_;
    changed();
}

}  // namespace qb
