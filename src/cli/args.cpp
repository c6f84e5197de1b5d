#include "cli/args.h"

namespace qb {

bool Args::parse(const std::vector<std::string>& words, const std::vector<Option>& known,
                 std::string* error) {
    positional_.clear();
    values_.clear();
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (optionsEnded || word.size() < 3 || word.compare(0, 2, "--") != 0) {
            if (word == "--") {
                optionsEnded = true;
                continue;
            }
            positional_.push_back(word);
            continue;
        }
        std::string name = word.substr(2);
        std::optional<std::string> inlineValue;
        if (auto eq = name.find('='); eq != std::string::npos) {
            inlineValue = name.substr(eq + 1);
            name.resize(eq);
        }
        const Option* option = nullptr;
        for (const Option& o : known) {
            if (name == o.name) option = &o;
        }
        if (!option) {
            *error = "unknown option --" + name;
            return false;
        }
        if (!option->takesValue) {
            if (inlineValue) {
                *error = "option --" + name + " takes no value";
                return false;
            }
            values_[name].push_back(std::string());
            continue;
        }
        if (!inlineValue) {
            if (i + 1 >= words.size()) {
                *error = "option --" + name + " needs a value";
                return false;
            }
            inlineValue = words[++i];
        }
        values_[name].push_back(*inlineValue);
    }
    return true;
}

std::optional<std::string> Args::value(const std::string& name) const {
    auto it = values_.find(name);
    if (it == values_.end() || it->second.empty()) return std::nullopt;
    return it->second.back();
}

std::vector<std::string> Args::all(const std::string& name) const {
    auto it = values_.find(name);
    return it == values_.end() ? std::vector<std::string>() : it->second;
}

}  // namespace qb
