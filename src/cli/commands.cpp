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
int runBackup(CommandContext& ctx);
int runArchive(CommandContext& ctx);
int runPeriod(CommandContext& ctx);
int runList(CommandContext& ctx);
int runFilter(CommandContext& ctx);
int runSummary(CommandContext& ctx);
int runExport(CommandContext& ctx);
int runReport(CommandContext& ctx);
int runLayout(CommandContext& ctx);
int runMarkPaid(CommandContext& ctx);
int runReplace(CommandContext& ctx);
int runNote(CommandContext& ctx);
int runTimer(CommandContext& ctx);
int runImport(CommandContext& ctx);

namespace {

constexpr const char* kEntryUsage =
    "usage: quillarbor entry add [FIELDS]\n"
    "       quillarbor entry update ID [FIELDS] [--no-start]\n"
    "       quillarbor entry show ID\n"
    "       quillarbor entry delete ID --yes\n"
    "       quillarbor entry toggle-paid ID\n"
    "       quillarbor entry copy ID [--duration TEXT] [--until YYYY-MM-DD] [--include-weekend]\n"
    "\n"
    "add and update accept or refuse an entry exactly as the entry editor's OK\n"
    "does, save it and print its id.\n"
    "copy prints the ids of the copies, one per day after the entry's day up to\n"
    "the end of its week or --until, weekends only with --include-weekend.\n"
    "\n"
    "FIELDS:\n"
    "  --date YYYY-MM-DD      the day (add: today)\n"
    "  --start HH:MM          the start time (add: none); --no-start clears it\n"
    "  --client C  --project P  --phase P  --task T\n"
    "  --duration TEXT        hours, as typed into the Duration box (1.5), cut\n"
    "                         after the second decimal; 0 to 655.35\n"
    "  --billable | --non-billable   (add: the Billable default of the options)\n"
    "  --paid | --unpaid\n"
    "  --currency C           (add: the default currency)\n"
    "  --rate TEXT            as typed into the rate box, cut after the second\n"
    "                         decimal; 0 to 42949672.95\n"
    "  --rate-type N          0 Normal, 1 Overtime, 2 Weekend, 3 Fixed, 4 Discount\n"
    "  --bill-to B  --custom1 X  --custom2 X  --custom3 X\n"
    "  --note TEXT\n"
    "\n"
    "update keeps the duration and rate it is not given exactly. --rate, --paid,\n"
    "--currency, --bill-to and --rate-type are refused for an entry that is not\n"
    "billable: add --billable. No text but the note may hold a tab, line break\n"
    "or other control character.\n";

constexpr const char* kClientUsage =
    "usage: quillarbor client list\n"
    "       quillarbor client show NAME\n"
    "       quillarbor client add NAME\n"
    "       quillarbor client rename OLD NEW\n"
    "       quillarbor client delete NAME --yes\n"
    "       quillarbor client tree\n"
    "       quillarbor client import clients|projects|tasks|contacts|vcard FILE\n"
    "                               [--client C] [--project P]\n"
    "       quillarbor client export clients|projects|tasks|contacts FILE\n"
    "                               [--client C] [--project P] [--unicode]\n"
    "       quillarbor client migrate projects|tasks FROM TO NAME...\n"
    "\n"
    "show prints 'client ID NAME', then the client's 'project P T', 'task T',\n"
    "'contact C' and 'rate ID TYPE RATE DESCRIPTION FLAG' lines. Deleting a client\n"
    "deletes its projects, tasks, contacts and rates; time entries keep its name.\n"
    "A rename onto the name of another client is refused.\n"
    "import adds each line of a list file (UTF-16 after an FF FE mark, UTF-8, else\n"
    "ANSI; lines over 128 characters cut to 127) or each card of a vCard file; export\n"
    "writes one level of the tree, CR LF between items, ANSI or --unicode UTF-16.\n"
    "tree prints the client setup tree: kind, number and text, two spaces of\n"
    "indent per level. migrate moves the named projects (with all their tasks)\n"
    "or tasks of client FROM to client TO.\n";

constexpr const char* kProjectUsage =
    "usage: quillarbor project add CLIENT PROJECT\n"
    "       quillarbor project rename CLIENT OLD NEW\n"
    "       quillarbor project delete CLIENT PROJECT --yes\n"
    "\n"
    "A rename changes every task pair of the project; deleting removes its tasks.\n"
    "A rename onto a project the client holds already is refused.\n";

constexpr const char* kTaskUsage =
    "usage: quillarbor task add CLIENT TASK [--project P]\n"
    "       quillarbor task delete CLIENT TASK [--project P]\n"
    "       quillarbor task rename CLIENT OLD NEW [--project P]\n"
    "\n"
    "With --project the task belongs to that project of the client, else to the\n"
    "client directly. A rename onto a task the client (or the project) holds\n"
    "already is refused.\n";

constexpr const char* kContactUsage =
    "usage: quillarbor contact add CLIENT NAME\n"
    "       quillarbor contact delete CLIENT NAME\n"
    "       quillarbor contact rename CLIENT OLD NEW\n"
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
    "id clientId client type rate description flag. add prints the new rate's id.\n"
    "A rate lies in 0 to 42949672.95 and is kept in hundredths, cut (0.29 is\n"
    "kept as 0.28); update without --rate keeps the rate exactly.\n";

constexpr const char* kDroplistUsage =
    "usage: quillarbor droplist list|clear LIST [--yes]\n"
    "       quillarbor droplist add|delete LIST TEXT\n"
    "       quillarbor droplist rename LIST OLD NEW\n"
    "       quillarbor droplist import LIST FILE\n"
    "\n"
    "LIST is phase, currency, custom1, custom2 or custom3. clear deletes the whole\n"
    "list and needs --yes. rename changes one item in place; import adds each\n"
    "line of a list file (UTF-16 after an FF FE mark, UTF-8, else ANSI). Saving an\n"
    "entry adds its new texts by itself.\n";

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

const std::string kPeriodUsage =
    std::string(
        "usage: quillarbor period [PERIOD]\n"
        "\n"
        "Prints the period's label, then its start and end (YYYY-MM-DDTHH:MM:SS).\n\n") +
    kPeriodOptionsHelp;

const std::string kListUsage =
    std::string(
        "usage: quillarbor list [PERIOD] [--rows default|simple|tree]\n"
        "\n"
        "Prints the entries the main window lists for the period: those that pass\n"
        "the current filter, arranged by the Sort setting. Without --rows the\n"
        "columns are id date start client project phase task duration billable\n"
        "paid currency rate rateType amount billTo custom1 custom2 custom3; with\n"
        "--rows, what that list style shows.\n\n") +
    kPeriodOptionsHelp;

const std::string kSummaryUsage =
    std::string(
        "usage: quillarbor summary [PERIOD]\n"
        "\n"
        "Prints the quick summary of the entries 'list' shows for the period: one\n"
        "line per row, its three cells separated by tabs.\n\n") +
    kPeriodOptionsHelp;

constexpr const char* kFilterUsage =
    "usage: quillarbor filter show\n"
    "       quillarbor filter reset          (Show All)\n"
    "       quillarbor filter unpaid         (Show Unpaid Only)\n"
    "       quillarbor filter set [--client X] [--project X] [--phase X] [--task X]\n"
    "              [--bill-to X] [--currency X] [--rate-type N]\n"
    "              [--no-unpaid] [--no-paid] [--no-non-billable]\n"
    "\n"
    "The filter chooses the entries the main window and 'list' show. A value\n"
    "must match exactly, capital letters included.\n";

constexpr const char* kBackupUsage =
    "usage: quillarbor backup create FILE\n"
    "       quillarbor backup restore FILE [--yes]\n"
    "\n"
    "create writes every time entry and all client master data to FILE (.qrb).\n"
    "restore adds the entries and clients of FILE to the data: nothing is deleted\n"
    "first and nothing is checked for duplicates, so restoring twice doubles the\n"
    "entries. Adding to entries already here needs --yes; a date-range archive is\n"
    "refused (use archive load). Prints what it added.\n";

constexpr const char* kArchiveUsage =
    "usage: quillarbor archive create FILE --from YYYY-MM-DD --to YYYY-MM-DD [--delete --yes]\n"
    "       quillarbor archive create FILE --client NAME [--client NAME]... [--delete --yes]\n"
    "       quillarbor archive load FILE\n"
    "\n"
    "create writes either the entries dated from --from 00:00:00 to --to 23:59:59,\n"
    "or the named clients with their projects, tasks, contacts and rates, to FILE\n"
    "(.qra), each client once, and prints how many. --delete deletes what was\n"
    "archived once the file is written (clients keep their entries) and needs\n"
    "--yes. load adds the entries of a date-range archive.\n";

constexpr const char* kImportUsage =
    "usage: quillarbor import FORMAT FILE [--dry-run] [--client C] [--project P] [--task T]\n"
    "                        [--billable | --non-billable] [--rate TEXT] [--currency C]\n"
    "\n"
    "Adds the time records of another tracker's file as entries, each checked as\n"
    "'entry add' checks it (duration rule, rate rule, master data learned), all in\n"
    "one transaction: when any row is refused (its line or record and the reason\n"
    "are printed), nothing of the file is added. Rows imported before are left\n"
    "alone, so importing a file again adds nothing. Times in UTC become local\n"
    "time by TZ. The last line is 'imported N, already imported M, refused K'.\n"
    "\n"
    "FORMAT:\n"
    "  timewarrior  'timew export' JSON: client:NAME, project:NAME, task:NAME tags,\n"
    "               else the other tags as the task; the annotation as the note\n"
    "  watson       Watson's frames file: project, the tags as the task\n"
    "  toggl        Toggl Track detailed CSV: Client, Project, Task or Description,\n"
    "               Billable, the rate from Amount (CUR)\n"
    "  clockify     Clockify detailed CSV: Client, Project, Task or Description,\n"
    "               Billable, Billable Rate (CUR)\n"
    "  kimai        Kimai CSV: Customer, Project, Activity, Description, Hourly rate\n"
    "               or Fixed rate\n"
    "  harvest      Harvest time CSV: Client, Project, Task, Notes, Hours\n"
    "  hamster      Hamster TSV: category, activity, description and tags\n"
    "  ical         iCalendar VEVENTs (and timed VTODOs): 1st CATEGORIES the client,\n"
    "               2nd the project, SUMMARY the task, DESCRIPTION the note\n"
    "\n"
    "Options fill what a row leaves empty. --dry-run prints the rows that would be\n"
    "added, as 'list' prints them (id empty), and writes nothing.\n";

constexpr const char* kExportUsage =
    "usage: quillarbor export csv FILE --from YYYY-MM-DD --to YYYY-MM-DD [CRITERIA]\n"
    "       quillarbor export xml FILE --from YYYY-MM-DD --to YYYY-MM-DD [CRITERIA]\n"
    "       quillarbor export ical FILE --from YYYY-MM-DD --to YYYY-MM-DD [CRITERIA]\n"
    "\n"
    "Writes the entries dated from --from 00:00:00 to --to 23:59:59 that pass the\n"
    "criteria, exactly as the CSV and XML exports write them: the ANSI code page\n"
    "(UTF-16 for the XML Encoding choice UTF-16), note line breaks in CSV replaced\n"
    "as the BreakSub setting says.\n"
    "ical writes one calendar event (VEVENT) per entry in UTF-8: SUMMARY the task,\n"
    "DESCRIPTION the note, CATEGORIES the client then the project, the start and\n"
    "the duration (an entry without a start time is an all-day event); 'import\n"
    "ical' reads it back.\n"
    "\n"
    "CRITERIA: --client X --project X --phase X --task X --bill-to X --currency X\n"
    "  --custom1 X --custom2 X --custom3 X --rate-type N\n"
    "  --no-unpaid --no-paid --no-non-billable\n";

constexpr const char* kReportUsage =
    "usage: quillarbor report FILE --from YYYY-MM-DD --to YYYY-MM-DD [CRITERIA]\n"
    "                         [--layout client|date|NAME]\n"
    "\n"
    "Writes the HTML report of the entries the criteria choose (see 'export --help'),\n"
    "laid out by the built-in Client or Date layout or a saved layout; by default\n"
    "the default layout (DefReport), else the built-in Client.\n";

constexpr const char* kLayoutUsage =
    "usage: quillarbor layout list\n"
    "       quillarbor layout show NAME|client|date\n"
    "       quillarbor layout save NAME [--from client|date|NAME] [--set FIELD=VALUE]...\n"
    "                              [--overwrite]\n"
    "       quillarbor layout delete NAME\n"
    "       quillarbor layout rename OLD NEW\n"
    "       quillarbor layout default NAME|none\n"
    "\n"
    "Saved report layouts. show prints name<TAB>value of every field; --set takes\n"
    "the same names (numbers in decimal or 0x hex). save starts from --from, else\n"
    "the default layout, prints the record id and needs --overwrite to replace a\n"
    "layout of that name. default none, client and date clear the default, which\n"
    "leaves reports with the built-in Client layout.\n";

constexpr const char* kMarkPaidUsage =
    "usage: quillarbor mark-paid --from YYYY-MM-DD --to YYYY-MM-DD [CRITERIA]\n"
    "\n"
    "Marks paid every billable entry that the criteria choose (see 'export\n"
    "--help'); non-billable entries stay as they are.\n";

constexpr const char* kReplaceUsage =
    "usage: quillarbor replace FIELD FIND REPLACEMENT --yes\n"
    "\n"
    "FIELD: client project phase task currency bill-to custom1 custom2 custom3\n"
    "project-task. Renames FIND in the master data or drop list of the field and\n"
    "in every entry whose field is exactly FIND (case counts). task renames the\n"
    "client's own tasks, project-task the tasks of projects; both change the\n"
    "entries' task.\n";

constexpr const char* kNoteUsage =
    "usage: quillarbor note export ID FILE [--format txt|unicode|rtf]\n"
    "\n"
    "Writes the entry's note: txt in the ANSI code page (default), unicode as\n"
    "UTF-16 with a byte-order mark, rtf as rich text.\n";

constexpr const char* kTimerUsage =
    "usage: quillarbor timer list\n"
    "       quillarbor timer record N [--client C] [--project P] [--task T] [--note TEXT]\n"
    "       quillarbor timer pause N\n"
    "       quillarbor timer complete N [FIELDS]\n"
    "       quillarbor timer reset N --yes\n"
    "       quillarbor timer note N TEXT\n"
    "\n"
    "The four entry timers (N is 1 to 4), shared with the desktop application and\n"
    "kept in the data directory: a recording timer counts the wall-clock time\n"
    "until it is paused or completed, whether or not a program runs.\n"
    "list prints timer state start elapsed client project task note, one line\n"
    "per timer (state idle, recording, paused or complete). record starts an idle\n"
    "timer now; pause pauses a recording timer and resumes a paused one.\n"
    "complete makes the timer's entry as the entry editor's OK does (its start,\n"
    "its time by the duration rule, its note, client, project and task; the FIELDS\n"
    "of 'entry add' override them), prints the new id and resets the timer; an\n"
    "entry that is refused leaves the timer as it was. reset clears the timer.\n"
    "note replaces its note.\n";

}  // namespace

const std::vector<Command>& allCommands() {
    static const std::vector<Command> kCommands = {
        {"entry", "add, change, show and delete time entries", kEntryUsage, runEntry},
        {"client", "list, show, add, rename and delete clients", kClientUsage, runClient},
        {"project", "add, rename and delete a client's projects", kProjectUsage, runProject},
        {"task", "add, rename and delete a client's tasks", kTaskUsage, runTask},
        {"contact", "add, rename and delete a client's Bill To contacts", kContactUsage,
         runContact},
        {"rate", "list, add, change and delete rates", kRateUsage, runRate},
        {"droplist", "the phase, currency and custom drop lists", kDroplistUsage, runDroplist},
        {"settings", "list, read and write settings", kSettingsUsage, runSettings},
        {"period", "the label and bounds of a period", kPeriodUsage.c_str(), runPeriod},
        {"list", "the entries of a period, as the main window lists them", kListUsage.c_str(),
         runList},
        {"filter", "show and change the entry filter", kFilterUsage, runFilter},
        {"summary", "the quick summary of a period", kSummaryUsage.c_str(), runSummary},
        {"backup", "write a backup file, or restore one", kBackupUsage, runBackup},
        {"archive", "archive entries or clients to a file, or load an archive", kArchiveUsage,
         runArchive},
        {"export", "write the chosen entries to a CSV, XML or iCalendar file", kExportUsage, runExport},
        {"import", "add the entries of another time tracker's file", kImportUsage, runImport},
        {"report", "write an HTML report of the chosen entries", kReportUsage, runReport},
        {"layout", "list, show, save, delete, rename saved report layouts", kLayoutUsage,
         runLayout},
        {"mark-paid", "mark the chosen billable entries paid", kMarkPaidUsage, runMarkPaid},
        {"replace", "replace a text in master data and entries", kReplaceUsage, runReplace},
        {"note", "export an entry's note to a file", kNoteUsage, runNote},
        {"timer", "the four entry timers: record, pause, complete", kTimerUsage, runTimer},
    };
    return kCommands;
}

}  // namespace qb
