#include "entry/done_texts.h"

namespace qb {

std::u16string numberText(long n) {
    std::u16string text;
    for (char c : std::to_string(n)) text.push_back(static_cast<char16_t>(c));
    return text;
}

std::u16string countText(long count, std::u16string_view one, std::u16string_view many) {
    return numberText(count) + u" " + std::u16string(count == 1 ? one : many);
}

std::u16string markPaidDoneText(long marked) {
    return u"Marked " + countText(marked, u"entry", u"entries") + u" as paid.";
}

std::u16string replaceDoneText(long entries, long renamed, long merged) {
    std::u16string text = u"Replace changed " + countText(entries, u"entry", u"entries") +
                          u" and " + countText(renamed + merged, u"name", u"names");
    if (merged > 0) {
        text += u" (" + numberText(merged) + u" merged into the one already there)";
    }
    return text + u".";
}

}  // namespace qb
