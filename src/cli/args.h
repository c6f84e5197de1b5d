#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qb {

// The words of one command: positional arguments and --options. Options may
// stand anywhere; "--name=value" and "--name value" both work; a repeated
// option keeps every value.
class Args {
public:
    struct Option {
        const char* name;  // without the leading dashes
        bool takesValue;
    };

    // Parses `words` against the known options; false with `error` set when a
    // word is not understood.
    bool parse(const std::vector<std::string>& words, const std::vector<Option>& known,
               std::string* error);

    const std::vector<std::string>& positional() const { return positional_; }
    bool has(const std::string& name) const { return values_.count(name) > 0; }
    std::optional<std::string> value(const std::string& name) const;
    std::vector<std::string> all(const std::string& name) const;

private:
    std::vector<std::string> positional_;
    std::map<std::string, std::vector<std::string>> values_;
};

}  // namespace qb
