#include "entry/vcard.h"

#include <algorithm>
#include <cctype>

#include "entry/file_bytes.h"
#include "entry/list_file.h"
#include "platform/text.h"

namespace qb {
namespace {

std::string upper(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

// Physical lines without their CR LF or LF.
std::vector<std::string_view> physicalLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

bool isQuotedPrintable(std::string_view head) {
    return upper(head).find("QUOTED-PRINTABLE") != std::string::npos;
}

// Logical lines: a line that begins with a blank continues the one before
// it (RFC 6350 folding); a quoted-printable value ending in '=' continues
// on the next line (vCard 2.1 soft breaks).
std::vector<std::string> logicalLines(std::string_view text) {
    std::vector<std::string> out;
    bool softBreak = false;
    for (std::string_view line : physicalLines(text)) {
        if (!out.empty() && softBreak) {
            out.back() += std::string(line);
        } else if (!out.empty() && !line.empty() && (line[0] == ' ' || line[0] == '\t')) {
            out.back() += std::string(line.substr(1));
        } else {
            out.emplace_back(line);
        }
        const std::string& last = out.back();
        std::size_t colon = last.find(':');
        softBreak = colon != std::string::npos && isQuotedPrintable(last.substr(0, colon)) &&
                    !last.empty() && last.back() == '=';
        if (softBreak) out.back().pop_back();
    }
    return out;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string decodeQuotedPrintable(std::string_view value) {
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '=' && i + 2 < value.size() && hexValue(value[i + 1]) >= 0 &&
            hexValue(value[i + 2]) >= 0) {
            out.push_back(static_cast<char>(hexValue(value[i + 1]) * 16 + hexValue(value[i + 2])));
            i += 2;
        } else {
            out.push_back(value[i]);
        }
    }
    return out;
}

// Splits at unescaped separators and resolves \\ \, \; \n.
std::vector<std::u16string> components(std::u16string_view value, char16_t separator) {
    std::vector<std::u16string> parts(1);
    for (std::size_t i = 0; i < value.size(); ++i) {
        char16_t c = value[i];
        if (c == u'\\' && i + 1 < value.size()) {
            char16_t next = value[++i];
            parts.back().push_back(next == u'n' || next == u'N' ? u'\n' : next);
        } else if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back().push_back(c);
        }
    }
    return parts;
}

std::u16string trimmed(std::u16string s) {
    auto blank = [](char16_t c) { return c == u' ' || c == u'\t'; };
    while (!s.empty() && blank(s.back())) s.pop_back();
    std::size_t start = 0;
    while (start < s.size() && blank(s[start])) ++start;
    return s.substr(start);
}

struct Property {
    std::string name;
    std::u16string value;
};

Property property(const std::string& line, const std::string& codePage) {
    Property p;
    std::size_t colon = line.find(':');
    if (colon == std::string::npos) return p;
    std::string head = line.substr(0, colon);
    std::string raw = line.substr(colon + 1);
    std::string charset;
    std::size_t semicolon = head.find(';');
    std::string name = upper(head.substr(0, semicolon));
    // A group prefix ("item1.ORG") does not change the property.
    if (std::size_t dot = name.rfind('.'); dot != std::string::npos) name = name.substr(dot + 1);
    p.name = name;
    for (std::size_t pos = semicolon; pos != std::string::npos;) {
        std::size_t next = head.find(';', pos + 1);
        std::string param = upper(
            head.substr(pos + 1, next == std::string::npos ? std::string::npos : next - pos - 1));
        if (param.rfind("CHARSET=", 0) == 0) charset = param.substr(8);
        pos = next;
    }
    if (isQuotedPrintable(head)) raw = decodeQuotedPrintable(raw);
    if (charset.empty()) {
        p.value = textFileText(raw, codePage);
    } else {
        p.value =
            charset == "UTF-8" || charset == "UTF8" ? utf8ToUtf16(raw) : fromAnsi(raw, charset);
    }
    return p;
}

std::u16string nameFromN(std::u16string_view value) {
    std::vector<std::u16string> parts = components(value, u';');
    std::u16string family = trimmed(parts[0]);
    std::u16string given = parts.size() > 1 ? trimmed(parts[1]) : std::u16string();
    if (family.empty()) return given;
    if (given.empty()) return family;
    return family + u", " + given;
}

}  // namespace

std::vector<VCardContact> parseVCards(std::string_view text, const std::string& codePage) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    std::vector<VCardContact> cards;
    bool inCard = false;
    std::u16string fn, n, org;
    for (const std::string& line : logicalLines(text)) {
        Property p = property(line, codePage);
        if (p.name == "BEGIN" && upper(utf16ToUtf8(trimmed(p.value))) == "VCARD") {
            inCard = true;
            fn.clear();
            n.clear();
            org.clear();
        } else if (!inCard) {
            continue;
        } else if (p.name == "END") {
            inCard = false;
            std::u16string fileAs = trimmed(components(fn, u'\0')[0]);
            if (fileAs.empty()) fileAs = nameFromN(n);
            if (fileAs.empty()) continue;
            cards.push_back({fileAs, trimmed(components(org, u';')[0])});
        } else if (p.name == "FN") {
            fn = p.value;
        } else if (p.name == "N") {
            n = p.value;
        } else if (p.name == "ORG") {
            org = p.value;
        }
    }
    return cards;
}

bool readVCardFile(const std::string& path, std::vector<VCardContact>* out,
                   const std::string& codePage) {
    std::string bytes;
    if (!readWholeFile(path, kVCardFileLimit, &bytes)) return false;
    if (upper(bytes).find("BEGIN:VCARD") == std::string::npos) return false;
    *out = parseVCards(bytes, codePage);
    return true;
}

}  // namespace qb
