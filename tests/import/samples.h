#pragma once

// Files of each format as their tools' documentation shows them, with the
// awkward cases those tools really write: quoted commas and line breaks, a
// UTF-8 mark, H:MM:SS and decimal durations, missing optional columns, work
// over midnight.

#include <string>

namespace qb::testing {

inline const std::string kTimewSample =
    "[\n"
    "{\"id\":3,\"start\":\"20240304T080000Z\",\"end\":\"20240304T093000Z\","
    "\"tags\":[\"client:Acme\",\"coding\",\"project:Web\"]},\n"
    "{\"id\":2,\"start\":\"20240305T223000Z\",\"end\":\"20240306T001500Z\","
    "\"tags\":[\"Acme\",\"client:Acme\",\"pair work\",\"review\"],\"annotation\":\"late, "
    "\\\"quoted\\\"\"},\n"
    "{\"id\":1,\"start\":\"20240306T130000Z\",\"end\":\"20240306T134500Z\",\"tags\":[\"task:"
    "Calls\",\"Beta\"]}\n"
    "]\n";

inline const std::string kWatsonSample =
    "[\n"
    " [1709539200, 1709544600, \"Acme site\", \"0a1b2c\", [\"design\", \"css\"], 1709544601],\n"
    " [1709629200, 1709632800, \"Acme site\", \"3d4e5f\", [], 1709632801]\n"
    "]\n";

// Toggl Track's detailed report: a BOM, a quoted description with a comma
// and a line break, an entry over midnight, an Amount column.
inline const std::string kTogglSample =
    "\xEF\xBB\xBFUser,Email,Client,Project,Task,Description,Billable,Start date,Start time,"
    "End date,End time,Duration,Tags,Amount (EUR)\r\n"
    "Ann,ann@example.com,Acme,Web,,\"Fix header, footer\",Yes,2024-03-04,09:00:00,2024-03-04,"
    "10:30:00,01:30:00,,142.50\r\n"
    "Ann,ann@example.com,Acme,Web,Deploy,\"Release\nnight\",No,2024-03-05,23:30:00,2024-03-06,"
    "00:45:00,01:15:00,ops,\r\n";

// Clockify's detailed report: American dates, 12-hour times, both
// durations, a rate column.
inline const std::string kClockifySample =
    "\"Project\",\"Client\",\"Description\",\"Task\",\"User\",\"Group\",\"Email\",\"Tags\","
    "\"Billable\",\"Start Date\",\"Start Time\",\"End Date\",\"End Time\",\"Duration (h)\","
    "\"Duration (decimal)\",\"Billable Rate (USD)\",\"Billable Amount (USD)\"\n"
    "\"Web\",\"Acme\",\"Call with Bob\",\"\",\"Ann\",\"\",\"ann@example.com\",\"\",\"Yes\","
    "\"01/07/2021\",\"01:26:00 PM\",\"01/07/2021\",\"02:43:00 PM\",\"01:17:00\",\"1.28\","
    "\"80.00\",\"102.67\"\n"
    "\"Web\",\"Acme\",\"Draft\",\"Writing\",\"Ann\",\"\",\"ann@example.com\",\"docs\",\"No\","
    "\"01/06/2021\",\"10:11:00 AM\",\"01/06/2021\",\"01:26:00 PM\",\"03:15:00\",\"3.25\","
    "\"0.00\",\"0.00\"\n";

// Kimai's export with ';' as the delimiter, decimal commas, an hourly and a
// fixed rate, and a row without a rate.
inline const std::string kKimaiSample =
    "Date;From;To;Duration;Rate;User;Customer;Project;Activity;Description;Exported;Tags;"
    "Hourly rate;Fixed rate\n"
    "2024-03-04;09:00;10:30;1:30;150,00;ann;Acme;Web;Design;\"Logo; drafts\";0;;100,00;\n"
    "2024-03-04;22:00;01:00;3:00;300,00;ann;Acme;Web;Ops;Night move;0;;;300,00\n"
    "2024-03-05;08:00;08:45;0:45;0;ann;Acme;Web;Mail;;0;;;\n";

// Harvest's time report: decimal hours, no start times, a missing Project.
inline const std::string kHarvestSample =
    "Date,Client,Project,Project Code,Task,Notes,Hours,Hours Rounded,Billable?,Invoiced?,"
    "Approved?,First Name,Last Name,Roles,Employee?,Billable Rate,Billable Amount,Cost Rate,"
    "Cost Amount,Currency,External Reference URL\n"
    "2024-03-04,Acme,Web,W1,Design,\"First I did this, then that\",2.3,2.5,Yes,No,No,Ann,Lee,,"
    "Yes,100,230,50,115,US Dollar - USD,\n"
    "2024-03-05,Acme,,,Support,,0.25,0.25,No,No,No,Ann,Lee,,Yes,0,0,50,12.5,US Dollar - USD,\n";

// Hamster's TSV export (Python's excel-tab dialect).
inline const std::string kHamsterSample =
    "activity\tstart time\tend time\tduration minutes\tcategory\tdescription\ttags\n"
    "Coding\t2024-03-04 09:00:00\t2024-03-04 10:15:00\t75\tAcme\tparser work\tcpp, tests\n"
    "Reading\t2024-03-04 23:00:00\t2024-03-05 00:30:00\t90\tAcme\t\"two\nlines\"\t\n";

// A calendar program's events and KTimeTracker's task with a time record.
inline const std::string kIcalSample =
    "BEGIN:VCALENDAR\r\n"
    "VERSION:2.0\r\n"
    "PRODID:-//Example//EN\r\n"
    "BEGIN:VEVENT\r\n"
    "UID:ev-1@example.com\r\n"
    "DTSTAMP:20240301T000000Z\r\n"
    "DTSTART:20240304T080000Z\r\n"
    "DTEND:20240304T093000Z\r\n"
    "SUMMARY:Design review\r\n"
    "DESCRIPTION:Agenda\\, notes\\nand a second line\r\n"
    "CATEGORIES:Acme,Web\r\n"
    "END:VEVENT\r\n"
    "BEGIN:VEVENT\r\n"
    "UID:ev-2@example.com\r\n"
    "DTSTAMP:20240301T000000Z\r\n"
    "DTSTART:20240305T090000\r\n"
    "DURATION:PT45M\r\n"
    "SUMMARY:Standup\r\n"
    "CATEGORIES:Beta\r\n"
    "END:VEVENT\r\n"
    "BEGIN:VTODO\r\n"
    "UID:task-1\r\n"
    "DTSTAMP:20240301T000000Z\r\n"
    "SUMMARY:Invoicing\r\n"
    "X-KDE-ktimetracker-totalTaskTime:60\r\n"
    "END:VTODO\r\n"
    "BEGIN:VEVENT\r\n"
    "UID:rec-1\r\n"
    "DTSTAMP:20240301T000000Z\r\n"
    "DTSTART:20240306T100000Z\r\n"
    "DTEND:20240306T110000Z\r\n"
    "RELATED-TO:task-1\r\n"
    "CATEGORIES:KTimeTracker\r\n"
    "X-KDE-ktimetracker-duration:3600\r\n"
    "END:VEVENT\r\n"
    "END:VCALENDAR\r\n";

}  // namespace qb::testing
