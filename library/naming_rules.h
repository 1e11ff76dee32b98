#pragma once
// The naming rules of a library: four ordered detail lists (file names of
// artist and various-artists tracks, their folders), a separator for each
// file-name list and the prefix option. The tables hold the accepted rules;
// the working lists are what the options window edits and what the builders
// read. Outside the open dialog both agree.
#include <QString>
#include <array>

namespace sonorit {

struct DetailRow {
    QString name;
    bool checked = false;
};

struct NamingRules {
    std::array<std::array<DetailRow, 6>, 2> fileLists;    // lists 0 (A) and 1 (B)
    std::array<int, 2> separators{5, 5};                 // index into the separator labels
    std::array<std::array<DetailRow, 4>, 2> folderLists;  // lists 2 (C) and 3 (D)
    bool prefix = true;

    static NamingRules defaults();
    bool operator==(const NamingRules& o) const;
};

struct NamingState {
    NamingRules tables = NamingRules::defaults();
    NamingRules working = NamingRules::defaults();
};

// "(none)| (Space)|..." split at "|", blanks kept.
const std::array<QString, 8>& separatorLabels();
// What goes between two details: the label up to its last "(".
QString separatorText(int index);

// Defaults into tables and working lists (program start, new library).
void Apply_Default_Naming_Rules(NamingState& n);
// Opening a library: tables from section DETAILS (defaults for missing keys),
// working lists from the tables, then the tables written back so that a file
// without the section gains it. With no library file the defaults are used and
// nothing is read or written.
void Read_Transfer_Save_Naming_Rules(NamingState& n, const QString& libraryFile);
void Write_Rename_Options(const NamingRules& tables, const QString& libraryFile);    // lists A, B
void Write_Relocate_Options(const NamingRules& tables, const QString& libraryFile);  // lists C, D, PREFIX

// The working lists of the file names (rows and separators) into the tables.
void AcceptRenameOptions(NamingState& n);
// The working lists of the folders and the prefix into the tables.
void AcceptRelocateOptions(NamingState& n);
// OK of the options window: both accepted and written to the library file
// (nothing is written without one).
void Accept_Naming_Options(NamingState& n, const QString& libraryFile);
// Cancel: the working lists are filled from the tables again.
void Cancel_Naming_Options(NamingState& n);

}  // namespace sonorit
