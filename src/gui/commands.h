#pragma once

// The command identifiers of the menu bar, tool bar and context menu, and
// the menu states that follow from the settings.

#include <cstdint>

namespace qb {

enum Command : int {
    kCmdNew = 40004,
    kCmdDay = 42001,
    kCmdWeek = 42002,
    kCmdMonth = 42003,
    kCmdCustomPeriod = 42004,
    kCmdDefaultStyle = 42100,
    kCmdSimpleStyle = 42101,
    kCmdTreeStyle = 42102,
    kCmdCustomize = 40038,
    kCmdShowAll = 104,
    kCmdShowUnpaid = 105,
    kCmdFilterCustom = 106,
    kCmdArrangeDefault = 40108,  // 40108 + key, up to 40116
    kCmdMarkPaidEntries = 40080,
    kCmdReport = 40081,
    kCmdReportDesigner = 40084,
    kCmdExportCsv = 40101,
    kCmdExportXml = 40102,
    kCmdBackupCreate = 40082,
    kCmdBackupRestore = 40083,
    kCmdArchiveCreate = 40103,
    kCmdArchiveLoad = 40219,
    kCmdClientSetup = 40032,
    kCmdRateSetup = 40129,
    kCmdEditDropLists = 40128,
    kCmdReplaceFieldText = 40125,
    kCmdOptions = 40052,
    kCmdAbout = 40003,
    kCmdEntryTimers = 41103,
    kCmdQuickSummary = 40218,
    kCmdPreview = 310,
    kCmdEdit = 311,
    kCmdEditMenu = 40063,
    kCmdCopy = 312,
    kCmdExportNote = 313,
    kCmdMarkAsPaid = 315,
    kCmdDelete = 317,
    kCmdHelp = 1,
    kCmdQuit = 2,
    // The desktop's own commands, beyond the handheld's menus.
    kCmdUndo = 43001,
    kCmdRedo = 43002,
    kCmdPreviousPeriod = 43003,
    kCmdNextPeriod = 43004,
    kCmdToday = 43005,
    kCmdTimesheet = 43006,
    kCmdImport = 43101,
    kCmdExportIcal = 43102,
};

}  // namespace qb
