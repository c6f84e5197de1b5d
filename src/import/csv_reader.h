#pragma once

// The CSV and TSV files of other trackers: RFC 4180 quoting (quoted fields
// with doubled quotes, commas and line breaks inside), CR LF or LF line
// ends, an optional UTF-8 mark, and ',', ';' or tab as the delimiter.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qb {

class CsvReader {
  public:
    // `delimiter` 0: the one of ',', ';' and tab that the first line holds
    // most of outside quotes.
    explicit CsvReader(std::string_view bytes, char delimiter = 0);

    // The next record; false at the end of the input. `line` is the line the
    // record starts on, from 1.
    bool next(std::vector<std::string>* fields, std::size_t* line);
    // True when the last record ended inside an open quote (a cut file).
    bool unterminated() const { return unterminated_; }
    char delimiter() const { return delimiter_; }

  private:
    std::string_view bytes_;
    std::size_t pos_ = 0;
    std::size_t line_ = 1;
    char delimiter_;
    bool unterminated_ = false;
};

// The delimiter a CsvReader would choose for these bytes.
char guessDelimiter(std::string_view bytes);

// Index of the header cell naming a column, compared ignoring ASCII case
// and surrounding blanks; the first of `names` found wins. -1 when none.
int columnOf(const std::vector<std::string>& header, std::initializer_list<std::string_view> names);

}  // namespace qb
