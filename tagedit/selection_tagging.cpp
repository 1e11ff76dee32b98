#include "selection_tagging.h"

#include "library/track_moves.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tagedit/panel_writes.h"
#include "tags/id3v1.h"

namespace sonorit {

namespace {

enum class RowOutcome { Done, Failed, Stop };

// The value in the panels as the user would have put it there. False when
// the cover could not be taken: it is the same file for every row, so the
// command ends.
bool putValue(PanelContext& p, SelectionKind kind, const QString& value)
{
    TagPanels& t = p.panels;
    switch (kind) {
    case SelectionKind::Artist:
        t.Tag1_Text_Artist = Trim(value);
        t.Tag2_Text_Artist = value;
        break;
    case SelectionKind::Album:
        t.Tag1_Text_Album = Trim(value);
        t.Tag2_Text_Album = value;
        break;
    case SelectionKind::Year:
        t.Tag1_Text_Year = Trim(value);
        t.Tag2_Text_Year = value;
        break;
    case SelectionKind::Genre: {
        const int index = static_cast<int>(Val(value.left(3)));
        if (index < 0 || index >= Genre_Names().size())
            break;
        t.Tag2_Combo_Genre = index;
        if (index <= 147)
            t.Tag1_Combo_Genre = index;
        t.Tag2_Text_Genre = value.mid(3);
        t.Tag2_Text_Genre_Enabled = index == 149;
        break;
    }
    case SelectionKind::VA:
        t.Tag2_Combo_VA = value == QLatin1String("On") ? 1 : 0;
        break;
    case SelectionKind::Cover:
        return Take_Cover_File(p, value);
    }
    p.show();
    return true;
}

RowOutcome tagRow(PanelContext& p, int row, SelectionKind kind, const QString& value)
{
    const TrackList& list = p.edit.lib.MP3_List;
    const QString path = list.field(row, ColFolder) + QLatin1Char('/') + list.field(row, ColFilename);
    if (!Load_Panels(p, path, row))
        return RowOutcome::Failed;
    if (!putValue(p, kind, value))
        return RowOutcome::Stop;
    // A v1.1 failure is told and the v2.3 tag is still written.
    const bool v1 = Write_Panel_Tag1(p, path);
    const bool v2 = Write_Panel_Tag2(p, path);
    return v1 && v2 ? RowOutcome::Done : RowOutcome::Failed;
}

bool hasSelection(const PanelContext& p)
{
    const TrackList& list = p.edit.lib.MP3_List;
    return !list.isEmpty() && list.selected() >= 0;
}

// An input box; "" when the user gave nothing, which ends the command.
QString ask(PanelContext& p, const char* prompt, const char* title)
{
    return p.edit.ui.input(QLatin1String(prompt), QLatin1String(title), QString());
}

int askAndTag(PanelContext& p, SelectionKind kind, const char* prompt, const char* title)
{
    if (!hasSelection(p))
        return 0;
    const QString value = ask(p, prompt, title);
    return value.isEmpty() ? 0 : Tag_Selection(p, kind, value);
}

}  // namespace

QString Genre_Answer(int index, const QString& text)
{
    return QString::number(index + 1000).right(3) + text;
}

bool Genre_Answer_Valid(const QString& answer)
{
    if (answer.size() < 3)
        return false;
    for (int i = 0; i < 3; ++i) {
        if (answer[i] < QLatin1Char('0') || answer[i] > QLatin1Char('9'))
            return false;
    }
    return answer.left(3).toInt() < Genre_Names().size();
}

bool Year_Answer_Valid(const QString& answer)
{
    if (answer.size() != 4)
        return false;
    for (const QChar ch : answer) {
        if (ch < QLatin1Char('0') || ch > QLatin1Char('9'))
            return false;
    }
    return true;
}

bool Tag_Selection_Row(PanelContext& p, int row, SelectionKind kind, const QString& value)
{
    return tagRow(p, row, kind, value) == RowOutcome::Done;
}

int Tag_Selection(PanelContext& p, SelectionKind kind, const QString& value)
{
    TagEditContext& c = p.edit;
    const std::vector<int> rows = c.lib.MP3_List.selectedRows();
    if (rows.empty())
        return 0;
    LibraryContext lc = c.library();
    c.ui.lockMainWindow();
    c.ui.showProgress();
    c.ui.setProgressRange(0, static_cast<int>(rows.size()));
    c.ui.setLabel17(QStringLiteral("Tagging the selected Files..."));
    Begin_Record_Batch(lc);
    int done = 0, failed = 0;
    for (const int row : rows) {
        if (row >= c.lib.MP3_List.count())
            continue;
        c.ui.setLabel18(QStringLiteral("Tagging Track ") + QString::number(done + 1) + QStringLiteral(" from ")
                        + QString::number(rows.size()) + QStringLiteral(": ")
                        + c.lib.MP3_List.field(row, ColFilename));
        c.ui.yield();
        const RowOutcome outcome = tagRow(p, row, kind, value);
        c.ui.setProgressValue(++done);
        if (outcome != RowOutcome::Done)
            ++failed;
        if (outcome == RowOutcome::Stop)
            break;
    }
    End_Record_Batch(lc);
    c.ui.setLabel17(QString());
    c.ui.setLabel18(QString());
    c.ui.hideProgress();
    c.ui.unlockMainWindow();
    return failed;
}

int mnu_Tag_sel_Artist(PanelContext& p)
{
    return askAndTag(p, SelectionKind::Artist, "Please fill in the name of the artist", "Tag Artist");
}

int mnu_Tag_sel_Album(PanelContext& p)
{
    return askAndTag(p, SelectionKind::Album, "Please fill in the name of the album", "Tag Album");
}

int mnu_Tag_sel_Year(PanelContext& p)
{
    if (!hasSelection(p))
        return 0;
    QString year;
    do
        year = ask(p, "Please fill in the year of the album", "Tag Year");
    while (!year.isEmpty() && !Year_Answer_Valid(year));
    return year.isEmpty() ? 0 : Tag_Selection(p, SelectionKind::Year, year);
}

int mnu_Tag_sel_Genre(PanelContext& p, const GenreAsk& askGenre)
{
    if (!hasSelection(p) || !askGenre)
        return 0;
    const QString answer = askGenre();
    if (answer.isEmpty() || answer == QLatin1String("Cancel"))
        return 0;
    return Tag_Selection(p, SelectionKind::Genre, answer);
}

int mnu_Tag_sel_VA_On(PanelContext& p)
{
    return hasSelection(p) ? Tag_Selection(p, SelectionKind::VA, QStringLiteral("On")) : 0;
}

int mnu_Tag_sel_VA_Off(PanelContext& p)
{
    return hasSelection(p) ? Tag_Selection(p, SelectionKind::VA, QStringLiteral("Off")) : 0;
}

int mnu_Tag_sel_Cover(PanelContext& p)
{
    if (!hasSelection(p))
        return 0;
    const QString file = Choose_Cover_File(p.edit);
    return file.isEmpty() ? 0 : Tag_Selection(p, SelectionKind::Cover, file);
}

}  // namespace sonorit
