#include "backup_support.h"

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>

#include "store/record_props.h"

namespace qb::testing {

Store::Store() : platform(Platform::inMemory()), entries(*platform), masters(*platform) {
    EXPECT_TRUE(entries.open());
    EXPECT_TRUE(masters.open());
}

std::vector<TimeEntry> Store::allEntries() {
    std::vector<TimeEntry> result;
    TimeEntry e;
    for (bool found = entries.seekFirst(); found && readEntry(entries, e) == 0;
         found = entries.seekNext()) {
        result.push_back(e);
    }
    return result;
}

ClientRecord Store::client(const std::u16string& name) {
    ClientRecord r;
    if (masters.clients.seekEqual(CEPROPVAL::wstr(kPropClient, name))) {
        readClient(masters.clients, &r);
    }
    return r;
}

ClientId Store::addClientNamed(const std::u16string& name) {
    ClientId id = 0;
    EXPECT_NE(addClient(masters.clients, name, &id), 0u);
    return id;
}

TimeEntry entryAt(FILETIME date, const std::u16string& client, const std::u16string& note) {
    TimeEntry e;
    e.date = date;
    e.client = client;
    e.task = u"Work";
    e.duration = 150;
    e.rate = 9000;
    e.billable = true;
    for (char16_t u : note) {
        e.notes.push_back(static_cast<std::uint8_t>(u));
        e.notes.push_back(static_cast<std::uint8_t>(u >> 8));
    }
    return e;
}

namespace {

std::string capture(const std::string& command, int* status) {
    std::string out;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return out;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    int rc = ::pclose(pipe);
    *status = WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
    return out;
}

}  // namespace

ToolRun qrbDump(const std::string& path) {
    ToolRun run;
    std::string tool = sharedDir() + "/tools/qrb_dump.py";
    if (!std::filesystem::exists("/usr/bin/python3") || !std::filesystem::exists(tool)) {
        run.err = "no /usr/bin/python3 or no " + tool;
        return run;
    }
    TempDir scratch;
    std::string errFile = scratch.file("err");
    run.out =
        capture("/usr/bin/python3 '" + tool + "' '" + path + "' 2>'" + errFile + "'", &run.status);
    run.err = readFile(errFile);
    // Status 2 is a missing package or a usage error: the tool, not the file.
    run.ran = run.status == 0 || run.status == 1;
    return run;
}


std::string fixture(const std::string& name) {
    return sharedDir() + "/fixtures/compound/" + name;
}

}  // namespace qb::testing
