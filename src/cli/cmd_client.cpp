#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/client_lists.h"
#include "entry/client_migration.h"
#include "entry/client_tree.h"
#include "entry/file_bytes.h"
#include "entry/list_file.h"
#include "entry/vcard.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/tables.h"

namespace qb {
namespace {

int list(CommandContext& ctx) {
    ctx.out << "clientId\tname\n";
    for (const ClientRecord& c : allClients(ctx.masters().clients)) {
        ctx.out << c.clientId << "\t" << u8(c.name) << "\n";
    }
    return kExitOk;
}

int show(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("client show takes one NAME");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    MasterTables& m = ctx.masters();
    ctx.out << "client\t" << client.clientId << "\t" << u8(client.name) << "\n";
    for (const ProjectRecord& p : projectsOf(m.projects, client.clientId)) {
        ctx.out << "project\t" << u8(p.project) << "\t" << u8(p.task) << "\n";
    }
    for (const NamedRecord& t : namesOf(m.tasks, client.clientId)) {
        ctx.out << "task\t" << u8(t.name) << "\n";
    }
    for (const NamedRecord& c : namesOf(m.contacts, client.clientId)) {
        ctx.out << "contact\t" << u8(c.name) << "\n";
    }
    for (const RateRecord& r : ratesOf(m.rates, client.clientId)) {
        ctx.out << "rate\t" << r.oid << "\t" << r.rateType << "\t"
                << stringPrintf("%.2f", r.rate * 0.01) << "\t" << u8(r.description) << "\t"
                << (r.flag ? 1 : 0) << "\n";
    }
    return kExitOk;
}

int add(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("client add takes one NAME");
    std::u16string name = inputText(args.positional()[0]);
    if (name.empty()) return ctx.refused(std::u16string(kBlankNotAllowed));
    if (addClient(ctx.masters().clients, name) == 0) {
        if (clientIdOf(ctx.masters().clients, name) != kNoClient) {
            return ctx.refused(nameTakenMessage(NameKind::kClient, name));
        }
        return ctx.failed("cannot add the client");
    }
    return kExitOk;
}

int rename(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 2) return ctx.usage("client rename takes OLD and NEW");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    ClientNode node;
    node.kind = NodeKind::kClient;
    node.number = client.oid;
    node.clientId = client.clientId;
    node.text = client.name;
    std::u16string name;
    const RenameOutcome outcome =
        renameNode(ctx.masters(), node, inputText(args.positional()[1]), &name);
    return renameStatus(ctx, outcome, NameKind::kClient, name);
}

int remove(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("client delete takes one NAME");
    ClientRecord client;
    if (!findClient(ctx, u16(args.positional()[0]), &client)) return kExitRefused;
    if (!confirmed(ctx, args.has("yes"), kDeleteClientQuestion)) return kExitRefused;
    if (!removeClient(ctx.masters(), {client.oid})) return ctx.failed("cannot delete the client");
    return kExitOk;
}

// A file operation that failed: the system's own text, exit status 1.
int fileFailed(CommandContext& ctx, std::u16string_view text) {
    ctx.err << u8(text) << "\n";
    return kExitFailed;
}

bool levelOf(const std::string& word, ListLevel* out) {
    static const struct {
        const char* word;
        ListLevel level;
    } kLevels[] = {{"clients", ListLevel::kClients},
                   {"projects", ListLevel::kProjects},
                   {"tasks", ListLevel::kTasks},
                   {"contacts", ListLevel::kContacts}};
    for (const auto& l : kLevels) {
        if (word == l.word) {
            *out = l.level;
            return true;
        }
    }
    return false;
}

// The tree selection an import or export starts from: a client for all but
// clients, and for tasks a project of it when --project is given.
bool targetOf(CommandContext& ctx, const Args& args, ListLevel level, ListTarget* target) {
    if (level == ListLevel::kClients) return true;
    auto client = args.value("client");
    if (!client) {
        ctx.usage("--client names the client to " + ctx.words()[0] + " for");
        return false;
    }
    ClientRecord record;
    if (!findClient(ctx, u16(*client), &record)) return false;
    target->client = record.clientId;
    auto project = args.value("project");
    if (!project || level != ListLevel::kTasks) return true;
    target->project = u16(*project);
    for (const ProjectRecord& p : projectsOf(ctx.masters().projects, record.clientId)) {
        if (p.project == target->project) return true;
    }
    ctx.refused("There is no project \"" + *project + "\".");
    return false;
}

int importVCard(CommandContext& ctx, const Args& args, const std::string& path) {
    ListTarget target;
    if (!targetOf(ctx, args, ListLevel::kContacts, &target)) return kExitRefused;
    std::vector<VCardContact> cards;
    if (!readVCardFile(path, &cards, ansiCodePage(ctx.platform().registry()))) {
        return fileFailed(ctx, kImportFailedMessage);
    }
    // Every listed contact is chosen, in list order.
    std::vector<std::u16string> names;
    for (const VCardContact& c : cards) names.push_back(inputText(u8(c.fileAs)));
    std::size_t added = 0;
    if (!importListItems(ctx.platform().file(), ctx.masters(), ListLevel::kContacts, target, names,
                         &added)) {
        return fileFailed(ctx, kImportFailedMessage);
    }
    return kExitOk;
}

int importList(CommandContext& ctx, const Args& args) {
    const auto& words = args.positional();
    if (words.size() != 2) return ctx.usage("client import takes a KIND and a FILE");
    if (words[0] == "vcard") return importVCard(ctx, args, words[1]);
    ListLevel level;
    if (!levelOf(words[0], &level)) return ctx.usage("unknown import kind '" + words[0] + "'");
    ListTarget target;
    if (!targetOf(ctx, args, level, &target)) return kExitRefused;
    std::vector<std::u16string> items;
    if (!readListFile(words[1], ansiCodePage(ctx.platform().registry()), &items)) {
        return fileFailed(ctx, kImportFailedMessage);
    }
    std::size_t added = 0;
    if (!importListItems(ctx.platform().file(), ctx.masters(), level, target, items, &added)) {
        return fileFailed(ctx, kImportFailedMessage);
    }
    return kExitOk;
}

int exportList(CommandContext& ctx, const Args& args) {
    const auto& words = args.positional();
    if (words.size() != 2) return ctx.usage("client export takes a KIND and a FILE");
    ListLevel level;
    if (!levelOf(words[0], &level)) return ctx.usage("unknown export kind '" + words[0] + "'");
    ListTarget target;
    if (!targetOf(ctx, args, level, &target)) return kExitRefused;
    std::string bytes = listFileBytes(listItemsOf(ctx.masters(), level, target),
                                      args.has("unicode"), ansiCodePage(ctx.platform().registry()));
    std::string why;
    if (!writeWholeFile(words[1], bytes, &why)) return ctx.failed(why);
    return kExitOk;
}

void printNode(CommandContext& ctx, const ClientNode& node, int depth) {
    ctx.out << std::string(depth * 2, ' ') << static_cast<int>(node.kind) << "\t" << node.number
            << "\t" << u8(node.text) << "\n";
    for (const ClientNode& child : node.children) printNode(ctx, child, depth + 1);
}

int tree(CommandContext& ctx) {
    for (const ClientNode& client : clientTree(ctx.masters())) printNode(ctx, client, 0);
    return kExitOk;
}

// client migrate projects|tasks FROM TO NAME...
int migrate(CommandContext& ctx, const Args& args) {
    const auto& words = args.positional();
    if (words.size() < 4 || (words[0] != "projects" && words[0] != "tasks")) {
        return ctx.usage("client migrate takes projects|tasks FROM TO NAME...");
    }
    ClientRecord from, to;
    if (!findClient(ctx, u16(words[1]), &from) || !findClient(ctx, u16(words[2]), &to)) {
        return kExitRefused;
    }
    std::vector<std::u16string> names;
    for (std::size_t i = 3; i < words.size(); ++i) names.push_back(u16(words[i]));
    DataFile& file = ctx.platform().file();
    MigrationResult r =
        words[0] == "projects"
            ? migrateProjects(file, ctx.masters(), from.clientId, to.clientId, names)
            : migrateTasks(file, ctx.masters(), from.clientId, to.clientId, names);
    return r.ok ? kExitOk : ctx.failed("cannot move the " + words[0]);
}

}  // namespace

int runClient(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("client needs list, show, add, rename or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1,
                   {{"yes", false}, {"client", true}, {"project", true}, {"unicode", false}})) {
        return kExitRefused;
    }
    if (verb == "import") return importList(ctx, args);
    if (verb == "export") return exportList(ctx, args);
    if (verb == "tree") return tree(ctx);
    if (verb == "migrate") return migrate(ctx, args);
    if (verb == "list") return list(ctx);
    if (verb == "show") return show(ctx, args);
    if (verb == "add") return add(ctx, args);
    if (verb == "rename") return rename(ctx, args);
    if (verb == "delete") return remove(ctx, args);
    return ctx.usage("unknown client command '" + verb + "'");
}

}  // namespace qb
