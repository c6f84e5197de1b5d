#include "entry/drop_lists.h"

#include "entry/entry_form.h"
#include "platform/data_file.h"
#include "store/record_props.h"

namespace qb {

const std::vector<ListKind>& editableLists() {
    static const std::vector<ListKind> kLists = {kListPhase, kListCurrency, kListCustom1,
                                                 kListCustom2, kListCustom3};
    return kLists;
}

RenameOutcome renameDropItem(ListTable& byKind, ListKind kind, const std::u16string& item,
                             const std::u16string& text, std::u16string* newText) {
    std::u16string edited = limitText(text, kDropItemLimit);
    if (newText) *newText = edited;
    if (edited.empty()) return RenameOutcome::kBlank;
    CEOID oid = byKind.findItem(kind, item);
    if (oid == 0) return RenameOutcome::kMissing;
    if (edited == item) return RenameOutcome::kUnchanged;
    if (byKind.findItem(kind, edited) != 0) return RenameOutcome::kTaken;
    return byKind.seekOid(oid) && byKind.update({CEPROPVAL::wstr(kPropText, edited)})
               ? RenameOutcome::kRenamed
               : RenameOutcome::kFailed;
}

bool canDeleteAll(ListTable& byKind, ListKind kind) {
    return !byKind.items(kind).empty();
}

bool importDropItems(DataFile& file, ListTable& list, ListKind kind,
                     const std::vector<std::u16string>& items, std::size_t* added) {
    *added = 0;
    if (!file.beginBatch()) return false;
    std::size_t count = 0;
    for (const std::u16string& item : items) {
        if (list.addItem(kind, item) != 0) ++count;
    }
    if (!file.commitBatch()) return false;
    *added = count;
    return true;
}

}  // namespace qb
