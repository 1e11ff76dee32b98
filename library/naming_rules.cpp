#include "naming_rules.h"

#include "shell/helpers.h"
#include "shell/ini_file.h"
#include "shell/settings_families.h"

namespace sonorit {

namespace {

const QString kDetails = QStringLiteral("DETAILS");
const char kLetters[] = "ABCD";

QString detailKey(int list, int row) { return QStringLiteral("DETAIL_%1%2").arg(QLatin1Char(kLetters[list])).arg(row + 1); }
QString stateKey(int list, int row) { return detailKey(list, row) + QStringLiteral("_STATE"); }

bool readBool(const IniFile& ini, const QString& key, bool def)
{
    const QString v = ini.read(kDetails, key, Bool_Text(def));
    if (v.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (v.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    return Val(v) != 0;
}

}  // namespace

NamingRules NamingRules::defaults()
{
    NamingRules r;
    r.fileLists[0] = {{{QStringLiteral("Artist"), true}, {QStringLiteral("Album"), true},
                       {QStringLiteral("Tracknumber"), true}, {QStringLiteral("Title"), true},
                       {QStringLiteral("Genre"), false}, {QStringLiteral("Year"), false}}};
    r.fileLists[1] = {{{QStringLiteral("Album"), true}, {QStringLiteral("Tracknumber"), true},
                       {QStringLiteral("Artist"), true}, {QStringLiteral("Title"), true},
                       {QStringLiteral("Genre"), false}, {QStringLiteral("Year"), false}}};
    r.folderLists[0] = {{{QStringLiteral("Artist"), true}, {QStringLiteral("Album"), true},
                         {QStringLiteral("Genre"), false}, {QStringLiteral("Year"), false}}};
    r.folderLists[1] = {{{QStringLiteral("Various Artists"), true}, {QStringLiteral("Album"), true},
                         {QStringLiteral("Genre"), false}, {QStringLiteral("Year"), false}}};
    r.separators = {5, 5};
    r.prefix = true;
    return r;
}

bool NamingRules::operator==(const NamingRules& o) const
{
    auto same = [](const auto& a, const auto& b) {
        for (size_t i = 0; i < a.size(); ++i)
            for (size_t j = 0; j < a[i].size(); ++j)
                if (a[i][j].name != b[i][j].name || a[i][j].checked != b[i][j].checked)
                    return false;
        return true;
    };
    return same(fileLists, o.fileLists) && same(folderLists, o.folderLists) && separators == o.separators
           && prefix == o.prefix;
}

const std::array<QString, 8>& separatorLabels()
{
    static const std::array<QString, 8> labels = [] {
        const QStringList parts =
            QStringLiteral("(none)| (Space)|-(Strip)|.(Dot)|_(Underscore)| - (Space+Strip+Space)| . (Space+Dot+Space)"
                           "| _ (Space+Underscore+Space)")
                .split(QLatin1Char('|'));
        std::array<QString, 8> a;
        for (size_t i = 0; i < a.size(); ++i)
            a[i] = parts[static_cast<int>(i)];
        return a;
    }();
    return labels;
}

QString separatorText(int index)
{
    if (index < 0 || index >= 8)
        return QString();
    const QString& label = separatorLabels()[static_cast<size_t>(index)];
    return label.left(label.lastIndexOf(QLatin1Char('(')));
}

void Apply_Default_Naming_Rules(NamingState& n)
{
    n.tables = NamingRules::defaults();
    n.working = n.tables;
}

void Read_Transfer_Save_Naming_Rules(NamingState& n, const QString& libraryFile)
{
    if (libraryFile.isEmpty()) {
        Apply_Default_Naming_Rules(n);
        return;
    }
    const IniFile ini(libraryFile);
    const NamingRules def = NamingRules::defaults();
    NamingRules& t = n.tables;
    for (int list = 0; list < 2; ++list) {
        for (int row = 0; row < 6; ++row) {
            const DetailRow& d = def.fileLists[list][row];
            t.fileLists[list][row] = {ini.read(kDetails, detailKey(list, row), d.name),
                                      readBool(ini, stateKey(list, row), d.checked)};
        }
        const int sep = static_cast<int>(
            Val(ini.read(kDetails, QStringLiteral("SEPARATOR_") + QLatin1Char(kLetters[list]), QStringLiteral("5"))));
        t.separators[list] = (sep >= 0 && sep < 8) ? sep : 5;
        for (int row = 0; row < 4; ++row) {
            const DetailRow& d = def.folderLists[list][row];
            t.folderLists[list][row] = {ini.read(kDetails, detailKey(list + 2, row), d.name),
                                        readBool(ini, stateKey(list + 2, row), d.checked)};
        }
    }
    t.prefix = readBool(ini, QStringLiteral("PREFIX"), true);
    n.working = t;
    Write_Rename_Options(t, libraryFile);
    Write_Relocate_Options(t, libraryFile);
}

void Write_Rename_Options(const NamingRules& t, const QString& libraryFile)
{
    const IniFile ini(libraryFile);
    for (int list = 0; list < 2; ++list) {
        for (int row = 0; row < 6; ++row) {
            ini.write(kDetails, detailKey(list, row), t.fileLists[list][row].name);
            ini.write(kDetails, stateKey(list, row), Bool_Text(t.fileLists[list][row].checked));
        }
        ini.write(kDetails, QStringLiteral("SEPARATOR_") + QLatin1Char(kLetters[list]),
                  QString::number(t.separators[list]));
    }
}

void Write_Relocate_Options(const NamingRules& t, const QString& libraryFile)
{
    const IniFile ini(libraryFile);
    for (int list = 0; list < 2; ++list) {
        for (int row = 0; row < 4; ++row) {
            ini.write(kDetails, detailKey(list + 2, row), t.folderLists[list][row].name);
            ini.write(kDetails, stateKey(list + 2, row), Bool_Text(t.folderLists[list][row].checked));
        }
    }
    ini.write(kDetails, QStringLiteral("PREFIX"), Bool_Text(t.prefix));
}

void AcceptRenameOptions(NamingState& n)
{
    n.tables.fileLists = n.working.fileLists;
    n.tables.separators = n.working.separators;
}

void AcceptRelocateOptions(NamingState& n)
{
    n.tables.folderLists = n.working.folderLists;
    n.tables.prefix = n.working.prefix;
}

void Accept_Naming_Options(NamingState& n, const QString& libraryFile)
{
    AcceptRenameOptions(n);
    if (!libraryFile.isEmpty())
        Write_Rename_Options(n.tables, libraryFile);
    AcceptRelocateOptions(n);
    if (!libraryFile.isEmpty())
        Write_Relocate_Options(n.tables, libraryFile);
}

void Cancel_Naming_Options(NamingState& n)
{
    n.working = n.tables;
}

}  // namespace sonorit
