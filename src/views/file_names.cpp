#include "views/file_names.h"

#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "views/calendar_helpers.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

std::u16string dayText(const SYSTEMTIME& d) {
    return utf8ToUtf16(stringPrintf("%04u-%02u-%02u", d.wYear, d.wMonth, d.wDay));
}

std::u16string slug(const std::u16string& text) {
    std::u16string out;
    for (char16_t c : text) {
        bool keep = (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c > 0x7f;
        if (c >= u'A' && c <= u'Z') {
            c = static_cast<char16_t>(c - u'A' + u'a');
            keep = true;
        }
        // Characters a file system refuses or a shell trips over.
        if (c == u'/' || c == u'\\') keep = false;
        if (keep) {
            out += c;
        } else if (!out.empty() && out.back() != u'-') {
            out += u'-';
        }
    }
    while (!out.empty() && out.back() == u'-') out.pop_back();
    return out;
}

}  // namespace

std::u16string rangeNamePart(const SYSTEMTIME& start, const SYSTEMTIME& end) {
    if (start.wMonth == 0) return {};
    bool sameMonth = start.wYear == end.wYear && start.wMonth == end.wMonth;
    SYSTEMTIME after = end;
    bool lastDay = end.wMonth != 0 && addDays(after, 1) && after.wMonth != end.wMonth;
    if (sameMonth && start.wDay == 1 && lastDay) {
        return utf8ToUtf16(stringPrintf("%04u-%02u", start.wYear, start.wMonth));
    }
    if (end.wMonth == 0 || (sameMonth && start.wDay == end.wDay)) return dayText(start);
    return dayText(start) + u"_" + dayText(end);
}

std::u16string suggestedFileName(std::u16string_view kind, const EntryFilter& criteria,
                                 std::u16string_view extension) {
    std::u16string name = u"quillarbor";
    if (!kind.empty()) name += u"-" + std::u16string(kind);
    std::u16string client = slug(criteria.client);
    if (!client.empty()) name += u"-" + client;
    std::u16string range = rangeNamePart(criteria.start, criteria.end);
    if (!range.empty()) name += u"-" + range;
    if (!extension.empty()) name += u"." + std::u16string(extension);
    return name;
}

}  // namespace qb
