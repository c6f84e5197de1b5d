#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "platform/platform.h"

namespace qb {
namespace {

constexpr const char* kLocalMachinePrefixes[] = {"HKEY_LOCAL_MACHINE\\", "HKLM\\"};
constexpr const char* kCurrentUserPrefixes[] = {"HKEY_CURRENT_USER\\", "HKCU\\"};

// "--key" names a key under HKEY_CURRENT_USER unless it starts with a root.
void splitKey(std::string key, RegRoot* root, std::string* path) {
    *root = RegRoot::HKEY_CURRENT_USER;
    for (const char* p : kLocalMachinePrefixes) {
        if (key.rfind(p, 0) == 0) {
            *root = RegRoot::HKEY_LOCAL_MACHINE;
            key = key.substr(std::string(p).size());
        }
    }
    for (const char* p : kCurrentUserPrefixes) {
        if (key.rfind(p, 0) == 0) key = key.substr(std::string(p).size());
    }
    *path = key;
}

bool typeFromName(const std::string& name, RegType* out) {
    if (name == "dword")
        *out = REG_DWORD;
    else if (name == "string")
        *out = REG_SZ;
    else if (name == "binary")
        *out = REG_BINARY;
    else
        return false;
    return true;
}

std::string rawText(const RegValue& v) {
    if (v.type == REG_DWORD && v.data.size() == 4) {
        std::uint32_t n = v.data[0] | v.data[1] << 8 | v.data[2] << 16 |
                          static_cast<std::uint32_t>(v.data[3]) << 24;
        return std::to_string(n);
    }
    if (v.type == REG_SZ) {
        std::u16string text;
        for (std::size_t i = 0; i + 1 < v.data.size(); i += 2) {
            char16_t c = static_cast<char16_t>(v.data[i] | v.data[i + 1] << 8);
            if (c == 0) break;
            text.push_back(c);
        }
        return u8(text);
    }
    return hexBytes(v.data.data(), v.data.size());
}

int list(CommandContext& ctx) {
    for (const SettingDescriptor& d : settingsTable()) {
        ctx.out << d.name << "\t" << u8(d.text(ctx.settings())) << "\n";
    }
    return kExitOk;
}

int get(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("settings get takes one NAME");
    const std::string& name = args.positional()[0];
    const SettingDescriptor* d = findSetting(name);
    if (d && !args.has("key")) {
        ctx.out << u8(d->text(ctx.settings())) << "\n";
        return kExitOk;
    }
    RegRoot root;
    std::string path;
    splitKey(args.value("key").value_or(kAppKey), &root, &path);
    auto key = ctx.platform().registry().openKey(root, path);
    RegValue v;
    if (!key || key->queryValue(name, 0xFFFFFFFF, &v) != ERROR_SUCCESS) {
        return ctx.failed("no registry value " + name + " under " + path);
    }
    ctx.out << rawText(v) << "\n";
    return kExitOk;
}

int set(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 2) return ctx.usage("settings set takes NAME and VALUE");
    const std::string& name = args.positional()[0];
    RegType type = REG_BINARY;
    if (auto t = args.value("type")) {
        if (!typeFromName(*t, &type)) return ctx.usage("--type is dword, string or binary");
    } else if (const SettingDescriptor* d = findSetting(name)) {
        type = d->type;
    } else {
        return ctx.usage(name + " is not a setting; give its --type");
    }
    std::vector<std::uint8_t> bytes;
    if (!settingBytesFromText(type, u16(args.positional()[1]), &bytes)) {
        return ctx.usage("'" + args.positional()[1] + "' is not a value of that type");
    }
    RegRoot root;
    std::string path;
    splitKey(args.value("key").value_or(kAppKey), &root, &path);
    auto key = ctx.platform().registry().createKey(root, path);
    if (!key || key->setValue(name, type, bytes) != ERROR_SUCCESS) {
        return ctx.failed("cannot write registry value " + name);
    }
    return kExitOk;
}

int unset(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("settings unset takes one NAME");
    RegRoot root;
    std::string path;
    splitKey(args.value("key").value_or(kAppKey), &root, &path);
    auto key = ctx.platform().registry().createKey(root, path);
    long rc = key ? key->deleteValue(args.positional()[0]) : ERROR_WRITE_FAULT;
    if (rc == ERROR_SUCCESS || rc == ERROR_FILE_NOT_FOUND) return kExitOk;
    return ctx.failed("cannot delete registry value " + args.positional()[0]);
}

}  // namespace

int runSettings(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("settings needs list, get, set or unset");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1, {{"key", true}, {"type", true}})) return kExitRefused;
    if (verb == "list") return list(ctx);
    if (verb == "get") return get(ctx, args);
    if (verb == "set") return set(ctx, args);
    if (verb == "unset") return unset(ctx, args);
    return ctx.usage("unknown settings command '" + verb + "'");
}

}  // namespace qb
