// sonorit-cli filename-words and filename-tag: the filename tagger's combo
// entries of a name, and a write through the tagger for one library row.
#include <QDir>

#include "cli/library_verb.h"
#include "cli/tag_verb_args.h"
#include "shell/settings_families.h"
#include "tagedit/filename_tagger.h"
#include "tagedit/tag_edit_context.h"

namespace sonorit::cli {

namespace {

const CliCommand filenameWords("filename-words", "filename-words NAME", [](CliContext&, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    for (const QString& run : Filename_Word_Runs(args[0]))
        out(run + QLatin1Char('\n'));
    return int(ExitOk);
});

struct FilenameTagArgs {
    QStringList positional;
    QMap<QString, QString> values;
    bool va = false;
};

QString parseFilenameTagArgs(const QStringList& args, FilenameTagArgs& a)
{
    const QStringList valued{"artist", "album", "title", "track", "year", "genre", "mode"};
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--va")) {
            a.va = true;
        } else if (arg.startsWith(QLatin1String("--"))) {
            const QString name = arg.mid(2);
            if (!valued.contains(name))
                return QStringLiteral("unknown option: ") + arg;
            if (i + 1 >= args.size())
                return QStringLiteral("a value must follow ") + arg;
            a.values[name] = args[++i];
        } else {
            a.positional << arg;
        }
    }
    if (a.positional.size() != 2)
        return QStringLiteral("filename-tag takes LIB.vkt and one ROW");
    for (const char* required : {"artist", "album", "title"}) {
        if (!a.values.contains(QLatin1String(required)))
            return QStringLiteral("--%1 is required").arg(QLatin1String(required));
    }
    const QString mode = a.values.value("mode", "both");
    if (mode != QLatin1String("v1") && mode != QLatin1String("v2") && mode != QLatin1String("both"))
        return QStringLiteral("--mode must be v1, v2 or both");
    if (a.values.contains("genre")) {
        const QString genre = a.values.value("genre");
        const qsizetype colon = genre.indexOf(QLatin1Char(':'));
        int index = -1;
        if (!Is_Number_In(colon < 0 ? genre : genre.left(colon), 0, 149, &index))
            return QStringLiteral("--genre must be a genre index from 0 to 149");
        if (colon >= 0 && index != 149)
            return QStringLiteral("a genre text goes only with index 149 (User defined)");
    }
    return {};
}

// The boxes filled as a user types into them, then Write.
int runFilenameTag(CliContext& c, LibraryContext& lc, const FilenameTagArgs& a, int row)
{
    if (const int rc = selectRows(lc.lib.MP3_List, {row}); rc != ExitOk)
        return rc;
    TagState tags = Fresh_Tag_State(c.app);
    TagEditContext edit{c.app, c.lib, c.ui, tags, nullptr, {}};
    FilenameTagger tagger(edit);
    tagger.Load_Library_Row(row);
    FilenameTagForm& form = tagger.form;
    form.FT_Tag2_Combo_Artist = a.values.value("artist");
    form.FT_Tag2_Combo_Album = a.values.value("album");
    form.FT_Tag2_Combo_Title = a.values.value("title");
    if (a.values.contains("track"))
        form.FT_Tag2_Text_Track = FilenameTagger::Digits_Typed(a.values.value("track"), 2);
    if (a.values.contains("year"))
        form.FT_Tag2_Text_Year = FilenameTagger::Digits_Typed(a.values.value("year"), 4);
    form.FT_Tag2_VA = a.va;
    if (a.values.contains("genre")) {
        const QString genre = a.values.value("genre");
        const qsizetype colon = genre.indexOf(QLatin1Char(':'));
        tagger.Genre_Click(genre.left(colon < 0 ? genre.size() : colon).toInt());
        if (colon >= 0)
            form.FT_Tag2_Text_Genre = genre.mid(colon + 1);
    }
    const QString mode = a.values.value("mode", "both");
    form.FT_Option1 = mode == QLatin1String("v1")   ? FtOption::Tag1Only
                      : mode == QLatin1String("v2") ? FtOption::Tag2Only
                                                    : FtOption::Both;
    return tagger.Write_Tag() ? int(ExitOk) : int(ExitFailed);
}

const CliCommand filenameTag("filename-tag",
                             "filename-tag LIB.vkt ROW --artist A --album A --title T [--track N] [--year Y] [--va] "
                             "[--genre INDEX[:TEXT]] [--mode v1|v2|both]",
                             [](CliContext& c, const QStringList& args) {
    FilenameTagArgs a;
    if (const QString problem = parseFilenameTagArgs(args, a); !problem.isEmpty())
        return usageError(problem);
    std::vector<int> rows;
    if (const int rc = parseRows(a.positional.mid(1), rows); rc != ExitOk)
        return rc;
    if (auto e = Get_Tag_Settings(c.app)) {
        reportError(e->text);
        return int(ExitFailed);
    }
    QDir().mkpath(c.app.paths.Data_Folder);
    return onLibrary(c, a.positional[0], Lengths::Tags,
                     [&](LibraryContext& lc) { return runFilenameTag(c, lc, a, rows.front()); });
});

}  // namespace

}  // namespace sonorit::cli
