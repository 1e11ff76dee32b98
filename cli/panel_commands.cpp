// sonorit-cli panels and edit: a library row picked as a click picks it, the
// tag panels as the user sees them, and an edit typed into them and written
// with their buttons.
#include <QDir>
#include <QFileInfo>

#include "cli/json_writer.h"
#include "cli/library_verb.h"
#include "cli/tag_verb_args.h"
#include "shell/settings_families.h"
#include "tagedit/panel_writes.h"
#include "tags/id3v1.h"

namespace sonorit::cli {

namespace {

JsonObject panelsJson(const TagPanels& p)
{
    JsonObject tag1;
    tag1.add("artist", p.Tag1_Text_Artist)
        .add("album", p.Tag1_Text_Album)
        .add("track", p.Tag1_Text_Track)
        .add("year", p.Tag1_Text_Year)
        .add("title", p.Tag1_Text_Title)
        .add("comment", p.Tag1_Text_Comment)
        .add("genre", p.Tag1_Combo_Genre);
    JsonObject tag2;
    tag2.add("artist", p.Tag2_Text_Artist)
        .add("album", p.Tag2_Text_Album)
        .add("track", p.Tag2_Text_Track)
        .add("year", p.Tag2_Text_Year)
        .add("title", p.Tag2_Text_Title)
        .add("comment", p.Tag2_Text_Comment)
        .add("genre", p.Tag2_Combo_Genre)
        .add("genre_text", p.Tag2_Text_Genre)
        .add("va", p.Tag2_Combo_VA == 1)
        .add("time", p.Tag2_Text_Time)
        .add("cover", p.Cover_Tag);
    const MpegLabels& m = p.Mpeg;
    JsonObject mpeg;
    mpeg.add("labSize", m.labSize)
        .add("labLength", m.labLength)
        .add("LabFramesCount", m.LabFramesCount)
        .add("labBitRate", m.labBitRate)
        .add("LabFrameSize", m.LabFrameSize)
        .add("labLayer", m.labLayer)
        .add("labFreqChan", m.labFreqChan)
        .add("labChannels", m.labChannels)
        .add("LabTagSize", m.LabTagSize);
    return JsonObject().add("tag1", tag1).add("tag2", tag2).add("mpeg", mpeg);
}

// One --v1 or --v2 value: which panel, which field, what is typed.
struct FieldEdit {
    int panel = 1;
    QString field;
    QString value;
};

struct EditArgs {
    QStringList positional;
    std::vector<FieldEdit> edits;
    QString copy;   // "", "v1-to-v2", "v2-to-v1"
    QString cover;  // a JPEG file
    QString write;  // "v1", "v2", "both"
};

const QStringList kV1Fields{"artist", "album", "track", "year", "title", "comment", "genre"};
const QStringList kV2Fields{"artist", "album", "track", "year", "title", "comment", "genre", "genre_text", "va"};

QString checkField(const FieldEdit& e)
{
    const QStringList& known = e.panel == 1 ? kV1Fields : kV2Fields;
    if (!known.contains(e.field))
        return QStringLiteral("--v%1 knows the fields %2").arg(e.panel).arg(known.join(QStringLiteral(", ")));
    if (e.field == QLatin1String("genre") && !Is_Number_In(e.value, 0, 149))
        return QStringLiteral("genre must be a genre index from 0 to 149");
    if (e.field == QLatin1String("va") && !QStringList{"yes", "no", "on", "off"}.contains(e.value))
        return QStringLiteral("va must be yes, no, on or off");
    return {};
}

QString parseEditArgs(const QStringList& args, EditArgs& a)
{
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (!arg.startsWith(QLatin1String("--"))) {
            a.positional << arg;
            continue;
        }
        const QStringList valued{"--v1", "--v2", "--copy", "--cover", "--write"};
        if (!valued.contains(arg))
            return QStringLiteral("unknown option: ") + arg;
        if (i + 1 >= args.size())
            return QStringLiteral("a value must follow ") + arg;
        const QString value = args[++i];
        if (arg == QLatin1String("--v1") || arg == QLatin1String("--v2")) {
            const qsizetype eq = value.indexOf(QLatin1Char('='));
            if (eq <= 0)
                return arg + QStringLiteral(" takes FIELD=VALUE");
            const FieldEdit e{arg == QLatin1String("--v1") ? 1 : 2, value.left(eq), value.mid(eq + 1)};
            if (const QString problem = checkField(e); !problem.isEmpty())
                return problem;
            a.edits.push_back(e);
        } else if (arg == QLatin1String("--copy")) {
            if (value != QLatin1String("v1-to-v2") && value != QLatin1String("v2-to-v1"))
                return QStringLiteral("--copy must be v1-to-v2 or v2-to-v1");
            a.copy = value;
        } else if (arg == QLatin1String("--cover")) {
            if (value.right(4).toLower() != QLatin1String(".jpg") || !QFileInfo(value).isFile())
                return QStringLiteral("--cover must name an existing .jpg file");
            a.cover = QFileInfo(value).absoluteFilePath();
        } else {
            if (value != QLatin1String("v1") && value != QLatin1String("v2") && value != QLatin1String("both"))
                return QStringLiteral("--write must be v1, v2 or both");
            a.write = value;
        }
    }
    if (a.positional.size() != 2)
        return QStringLiteral("edit takes LIB.vkt and one ROW");
    if (a.write.isEmpty())
        return QStringLiteral("--write v1|v2|both is required");
    return {};
}

PanelBox boxOf(int panel, const QString& field)
{
    static const QStringList order{"artist", "album", "track", "year", "title", "comment"};
    static const PanelBox tag1[] = {PanelBox::Tag1_Text_Artist, PanelBox::Tag1_Text_Album, PanelBox::Tag1_Text_Track,
                                    PanelBox::Tag1_Text_Year,   PanelBox::Tag1_Text_Title, PanelBox::Tag1_Text_Comment};
    static const PanelBox tag2[] = {PanelBox::Tag2_Text_Artist, PanelBox::Tag2_Text_Album, PanelBox::Tag2_Text_Track,
                                    PanelBox::Tag2_Text_Year,   PanelBox::Tag2_Text_Title, PanelBox::Tag2_Text_Comment};
    const qsizetype i = order.indexOf(field);
    return i < 0 ? PanelBox::Tag2_Text_Genre : (panel == 1 ? tag1 : tag2)[i];
}

// What a user does in the panels for one edit; "" or why it cannot be done.
QString applyEdit(PanelContext& p, const FieldEdit& e)
{
    TagPanels& panels = p.panels;
    if (e.field == QLatin1String("genre")) {
        const int index = e.value.toInt();
        if (e.panel == 1)
            panels.Tag1_Combo_Genre = index;
        else
            Tag2_Combo_Genre_Click(p, index);
    } else if (e.field == QLatin1String("va")) {
        panels.Tag2_Combo_VA = e.value == QLatin1String("yes") || e.value == QLatin1String("on") ? 1 : 0;
    } else if (e.field == QLatin1String("genre_text")) {
        if (!panels.Tag2_Text_Genre_Enabled)
            return QStringLiteral("the genre box takes text only for genre 149 (User Defined)");
        panels.Type_Into(PanelBox::Tag2_Text_Genre, e.value);
    } else {
        // A box is typed over whole: it selects all of its text on focus.
        panels.Type_Into(boxOf(e.panel, e.field), e.value);
    }
    return {};
}

int runEdit(CliContext& c, LibraryContext& lc, const EditArgs& a, int row)
{
    if (const int rc = selectRows(lc.lib.MP3_List, {row}); rc != ExitOk)
        return rc;
    TagState tags = Fresh_Tag_State(c.app);
    TagEditContext edit{c.app, c.lib, c.ui, tags, nullptr, {}};
    TagPanels panels;
    PanelContext p{edit, panels, {}, {}};
    if (!Select_Library_Row(p, row))
        return ExitFailed;
    // The genre combos before the boxes, so that a genre text finds its box open.
    for (bool genres : {true, false}) {
        for (const FieldEdit& e : a.edits) {
            if ((e.field == QLatin1String("genre")) != genres)
                continue;
            if (const QString problem = applyEdit(p, e); !problem.isEmpty())
                return usageError(problem);
        }
    }
    if (a.copy == QLatin1String("v1-to-v2"))
        CommandCopyTagv1(panels);
    else if (a.copy == QLatin1String("v2-to-v1"))
        CommandCopyTagv2(panels);
    if (!a.cover.isEmpty()) {
        answerNextDialog(c, a.cover);
        if (!CommandCover(p))
            return ExitFailed;
    }
    bool ok = true;
    if (a.write != QLatin1String("v2"))
        ok = Command_Write_Tag1(p) == WriteOutcome::Written;
    if (a.write != QLatin1String("v1"))
        ok = Command_Write_Tag2(p) == WriteOutcome::Written && ok;
    out(panelsJson(panels).text() + QLatin1Char('\n'));
    return ok ? int(ExitOk) : int(ExitFailed);
}

int prepare(CliContext& c)
{
    if (auto e = Get_Tag_Settings(c.app)) {
        reportError(e->text);
        return ExitFailed;
    }
    QDir().mkpath(c.app.paths.Data_Folder);
    return ExitOk;
}

const CliCommand panelsCommand("panels", "panels LIB.vkt ROW", [](CliContext& c, const QStringList& args) {
    if (args.size() != 2)
        return usageError(QStringLiteral("panels takes LIB.vkt and one ROW"));
    std::vector<int> rows;
    if (const int rc = parseRows(args.mid(1), rows); rc != ExitOk)
        return rc;
    if (const int rc = prepare(c); rc != ExitOk)
        return rc;
    return onLibrary(c, args[0], Lengths::Tags, [&](LibraryContext& lc) {
        if (const int rc = selectRows(lc.lib.MP3_List, rows); rc != ExitOk)
            return rc;
        TagState tags = Fresh_Tag_State(c.app);
        TagEditContext edit{c.app, c.lib, c.ui, tags, nullptr, {}};
        TagPanels panels;
        PanelContext p{edit, panels, {}, {}};
        if (!Select_Library_Row(p, rows.front()))
            return int(ExitFailed);
        out(panelsJson(panels).text() + QLatin1Char('\n'));
        return int(ExitOk);
    });
});

const CliCommand editCommand("edit",
                             "edit LIB.vkt ROW [--v1 FIELD=VALUE]... [--v2 FIELD=VALUE]... [--copy v1-to-v2|v2-to-v1] "
                             "[--cover FILE.jpg] --write v1|v2|both",
                             [](CliContext& c, const QStringList& args) {
    EditArgs a;
    if (const QString problem = parseEditArgs(args, a); !problem.isEmpty())
        return usageError(problem);
    std::vector<int> rows;
    if (const int rc = parseRows(a.positional.mid(1), rows); rc != ExitOk)
        return rc;
    if (const int rc = prepare(c); rc != ExitOk)
        return rc;
    return onLibrary(c, a.positional[0], Lengths::Tags,
                     [&](LibraryContext& lc) { return runEdit(c, lc, a, rows.front()); });
});

}  // namespace

}  // namespace sonorit::cli
