#include "cli/command.h"

namespace qb {

int runEntry(CommandContext& ctx);
int runClient(CommandContext& ctx);
int runProject(CommandContext& ctx);
int runTask(CommandContext& ctx);
int runContact(CommandContext& ctx);
int runRate(CommandContext& ctx);
int runDroplist(CommandContext& ctx);
int runSettings(CommandContext& ctx);
int runPeriod(CommandContext& ctx);
int runList(CommandContext& ctx);
int runFilter(CommandContext& ctx);

namespace {

constexpr const char* kEntryUsage =
    "usage: quillarbor entry add [FIELDS]\n"
    "       quillarbor entry update ID [FIELDS] [--no-start]\n"
    "       quillarbor entry show ID\n"
    "       quillarbor entry delete ID --yes\n"
    "       quillarbor entry toggle-paid ID\n"
    "\n"
    "add and update accept or refuse an entry exactly as the entry editor's OK\n"
    "does, save it and print its id.\n"
    "\n"
    "FIELDS:\n"
    "  --date YYYY-MM-DD      the day (add: today)\n"
    "  --start HH:MM          the start time (add: none); --no-start clears it\n"
    "  --client C  --project P  --phase P  --task T\n"
    "  --duration TEXT        hours, as typed into the Duration box (1.5)\n"
    "  --billable | --non-billable   (add: the Billable default of the options)\n"
    "  --paid | --unpaid\n"
    "  --currency C           (add: the default currency)\n"
    "  --rate TEXT            as typed into the rate box\n"
    "  --rate-type N          0 Normal, 1 Overtime, 2 Weekend, 3 Fixed, 4 Discount\n"
    "  --bill-to B  --custom1 X  --custom2 X  --custom3 X\n"
    "  --note TEXT\n";

constexpr const char* kClientUsage =
    "usage: quillarbor client list\n"
    "       quillarbor client show NAME\n"
    "       quillarbor client add NAME\n"
    "       quillarbor client rename OLD NEW\n"
    "       quillarbor client delete NAME --yes\n"
    "\n"
    "show prints 'client ID NAME', then the client's 'project P T', 'task T',\n"
    "'contact C' and 'rate ID TYPE RATE DESCRIPTION FLAG' lines. Deleting a client\n"
    "deletes its projects, tasks, contacts and rates; time entries keep its name.\n";

constexpr const char* kProjectUsage =
    "usage: quillarbor project add CLIENT PROJECT\n"
    "       quillarbor project rename CLIENT OLD NEW\n"
    "       quillarbor project delete CLIENT PROJECT --yes\n"
    "\n"
    "A rename changes every task pair of the project; deleting removes its tasks.\n";

constexpr const char* kTaskUsage =
    "usage: quillarbor task add CLIENT TASK [--project P]\n"
    "       quillarbor task delete CLIENT TASK [--project P]\n"
    "\n"
    "With --project the task belongs to that project of the client, else to the\n"
    "client directly.\n";

constexpr const char* kContactUsage =
    "usage: quillarbor contact add CLIENT NAME\n"
    "       quillarbor contact delete CLIENT NAME\n"
    "\n"
    "Contacts are the Bill To choices of a client's entries.\n";

constexpr const char* kRateUsage =
    "usage: quillarbor rate list\n"
    "       quillarbor rate add --client NAME|--default --type N --description D --rate TEXT\n"
    "       quillarbor rate update ID [--type N] [--description D] [--rate TEXT]\n"
    "       quillarbor rate delete ID\n"
    "\n"
    "Rate types: 0 Normal, 1 Overtime, 2 Weekend, 3 Fixed (the whole amount,\n"
    "whatever the duration), 4 Discount. list prints the rates in Rate Setup order:\n"
    "id clientId client type rate description flag. add prints the new rate's id.\n";

constexpr const char* kDroplistUsage =
    "usage: quillarbor droplist list|clear LIST [--yes]\n"
    "       quillarbor droplist add|delete LIST TEXT\n"
    "\n"
    "LIST is phase, currency, custom1, custom2 or custom3. clear deletes the whole\n"
    "list and needs --yes. Saving an entry adds its new texts by itself.\n";

constexpr const char* kSettingsUsage =
    "usage: quillarbor settings list\n"
    "       quillarbor settings get NAME [--key KEY]\n"
    "       quillarbor settings set NAME VALUE [--key KEY] [--type dword|string|binary]\n"
    "       quillarbor settings unset NAME [--key KEY]\n"
    "\n"
    "NAME is the registry value name (View, DefNewStyles, FSize, MinTime, ...).\n"
    "Values live under Software\\Quillarbor unless --key names another key\n"
    "(HKLM\\ before it for the machine's keys). Numbers are decimal, binary\n"
    "values lowercase hex.\n";

constexpr const char* kPeriodOptionsHelp =
    "PERIOD options:\n"
    "  --view day|week|month|custom   (default: the View setting)\n"
    "  --date YYYY-MM-DD              the period's date (default: today)\n"
    "  --end YYYY-MM-DD               the custom period's end (default: the saved one)\n"
    "  --select YYYY-MM-DD            pick a date, as on the calendar\n"
    "  --move next,previous,today     navigation steps, in order\n";

const std::string kPeriodUsage = std::string(
    "usage: quillarbor period [PERIOD]\n"
    "\n"
    "Prints the period's label, then its start and end (YYYY-MM-DDTHH:MM:SS).\n\n") +
    kPeriodOptionsHelp;

const std::string kListUsage = std::string(
    "usage: quillarbor list [PERIOD] [--rows default|simple|tree]\n"
    "\n"
    "Prints the entries the main window lists for the period: those that pass\n"
    "the current filter, arranged by the Sort setting. Without --rows the\n"
    "columns are id date start client project phase task duration billable\n"
    "paid currency rate rateType amount billTo custom1 custom2 custom3; with\n"
    "--rows, what that list style shows.\n\n") +
    kPeriodOptionsHelp;

constexpr const char* kFilterUsage =
    "usage: quillarbor filter show\n"
    "       quillarbor filter reset          (Show All)\n"
    "       quillarbor filter unpaid         (Show Unpaid Only)\n"
    "       quillarbor filter set [--client X] [--project X] [--phase X] [--task X]\n"
    "              [--bill-to X] [--currency X] [--rate-type N]\n"
    "              [--no-unpaid] [--no-paid] [--no-non-billable]\n"
    "\n"
    "The filter chooses the entries the main window and 'list' show.\n";

}  // namespace

const std::vector<Command>& allCommands() {
    static const std::vector<Command> kCommands = {
        {"entry", "add, change, show and delete time entries", kEntryUsage, runEntry},
        {"client", "list, show, add, rename and delete clients", kClientUsage, runClient},
        {"project", "add, rename and delete a client's projects", kProjectUsage, runProject},
        {"task", "add and delete a client's tasks", kTaskUsage, runTask},
        {"contact", "add and delete a client's Bill To contacts", kContactUsage, runContact},
        {"rate", "list, add, change and delete rates", kRateUsage, runRate},
        {"droplist", "the phase, currency and custom drop lists", kDroplistUsage, runDroplist},
        {"settings", "list, read and write settings", kSettingsUsage, runSettings},
        {"period", "the label and bounds of a period", kPeriodUsage.c_str(), runPeriod},
        {"list", "the entries of a period, as the main window lists them", kListUsage.c_str(),
         runList},
        {"filter", "show and change the entry filter", kFilterUsage, runFilter},
    };
    return kCommands;
}

}  // namespace qb
