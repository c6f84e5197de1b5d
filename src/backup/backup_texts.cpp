#include "backup/backup_texts.h"

#include "backup/backup_progress.h"
#include "backup/backup_writer.h"

namespace qb {

std::u16string backingUpRecordText(long number) {
    std::u16string text = u"Backing up record ";
    for (char c : std::to_string(number)) text.push_back(static_cast<char16_t>(c));
    return text + u"...";
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
