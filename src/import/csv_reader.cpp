#include "import/csv_reader.h"

#include <algorithm>
#include <cctype>

namespace qb {
namespace {

std::string_view withoutMark(std::string_view bytes) {
    if (bytes.size() >= 3 && static_cast<unsigned char>(bytes[0]) == 0xEF &&
        static_cast<unsigned char>(bytes[1]) == 0xBB &&
        static_cast<unsigned char>(bytes[2]) == 0xBF) {
        bytes.remove_prefix(3);
    }
    return bytes;
}

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
    return s;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

}  // namespace

char guessDelimiter(std::string_view bytes) {
    bytes = withoutMark(bytes);
    std::size_t counts[3] = {0, 0, 0};
    constexpr char kCandidates[3] = {',', ';', '\t'};
    bool quoted = false;
    for (char c : bytes) {
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (c == '\n') break;
        for (int i = 0; i < 3; ++i) {
            if (c == kCandidates[i]) ++counts[i];
        }
    }
    int best = 0;
    for (int i = 1; i < 3; ++i) {
        if (counts[i] > counts[best]) best = i;
    }
    return kCandidates[best];
}

CsvReader::CsvReader(std::string_view bytes, char delimiter)
    : bytes_(withoutMark(bytes)), delimiter_(delimiter ? delimiter : guessDelimiter(bytes)) {}

bool CsvReader::next(std::vector<std::string>* fields, std::size_t* line) {
    fields->clear();
    // Blank lines between records carry nothing.
    while (pos_ < bytes_.size() && (bytes_[pos_] == '\n' || bytes_[pos_] == '\r')) {
        if (bytes_[pos_] == '\n') ++line_;
        ++pos_;
    }
    if (pos_ >= bytes_.size()) return false;
    *line = line_;
    std::string field;
    bool quoted = false;
    bool wasQuoted = false;
    while (pos_ < bytes_.size()) {
        const char c = bytes_[pos_++];
        if (quoted) {
            if (c == '"') {
                if (pos_ < bytes_.size() && bytes_[pos_] == '"') {
                    field.push_back('"');
                    ++pos_;
                } else {
                    quoted = false;
                }
            } else {
                if (c == '\n') ++line_;
                field.push_back(c);
            }
            continue;
        }
        if (c == '"' && !wasQuoted && trimmed(field).empty()) {
            field.clear();
            quoted = true;
            wasQuoted = true;
        } else if (c == delimiter_) {
            fields->push_back(std::move(field));
            field.clear();
            wasQuoted = false;
        } else if (c == '\n' || c == '\r') {
            if (c == '\r' && pos_ < bytes_.size() && bytes_[pos_] == '\n') ++pos_;
            ++line_;
            fields->push_back(std::move(field));
            return true;
        } else {
            field.push_back(c);
        }
    }
    unterminated_ = quoted;
    fields->push_back(std::move(field));
    return true;
}

int columnOf(const std::vector<std::string>& header,
             std::initializer_list<std::string_view> names) {
    for (std::string_view name : names) {
        for (std::size_t i = 0; i < header.size(); ++i) {
            if (equalIgnoringCase(trimmed(header[i]), name)) return static_cast<int>(i);
        }
    }
    return -1;
}

}  // namespace qb
