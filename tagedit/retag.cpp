#include "retag.h"

#include <cstring>
#include <functional>

#include "library/naming_commands.h"
#include "library/refresh.h"
#include "library/track_import.h"
#include "library/track_moves.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"
#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tags/other_versions.h"
#include "tags/tag2_header.h"
#include "tags/tag_swap.h"
#include "tags/track_seconds.h"
#include "tagedit/track_follow.h"

namespace sonorit {

namespace {

const QLatin1String kVarious("Various Artists");

QString rowPath(const TrackList& list, int row)
{
    return list.field(row, ColFolder) + QLatin1Char('/') + list.field(row, ColFilename);
}

// Steps 2 to 7 of a retag on an existing file; `row` is its library row or -1.
RetagResult retag(TagEditContext& c, const QString& path, int row, RetagRun& run)
{
    TagState& tags = c.tags;
    tags.Read_Other_Versions = c.app.Tag_Read_Other;
    // Writing from a tag the reader does not take would give a file without
    // any tag: such a file is not touched.
    if (Tag_Unreadable(tags, path)) {
        ++run.unreadable;
        return RetagResult::Unreadable;
    }
    Read_Tag2(tags, path, Tag2Mode::Quick);
    // The quick read keeps only the flag; written back as it stands the
    // track would lose its various-artists mark.
    if (tags.Tag2_Quick_Fields.VA == QLatin1String("Yes"))
        tags.Tag2_Quick_Fields.VA = kVarious;
    const TagOptions options = c.app.Tag_Options;
    const bool written = Write_Through_Temp(c.app.Data_Folder(), path, c.ui,
                                            [&](const QString& source, const QString& target) {
                                                return Write_Tag2_Quick(tags, options, source, target);
                                            });
    if (!written) {
        ++run.failed;
        return RetagResult::Failed;
    }
    Read_Tag2(tags, path, Tag2Mode::Quick);
    if (row < 0)
        return RetagResult::Done;
    const Tag2FieldSet& f = tags.Tag2_Quick_Fields;
    RowTags t;
    t.Artist = f.Artist;
    t.Album = f.Album;
    t.Track = f.Track;
    t.Title = f.Title;
    t.Year = f.Year;
    t.Genre = f.Genre;
    t.VA = f.VA == QLatin1String("Yes");
    t.Time = !f.Time.isEmpty() ? f.Time
                               : Format_Seconds(Get_Track_Seconds(path, c.app.Data_Folder(), c.lib.durations));
    Follow_Tag_Write(c, path, t, row);
    return RetagResult::Done;
}

// The rows in the order given; a row that has gone past the end is passed.
void retagRows(TagEditContext& c, const std::vector<int>& rows, RetagRun& run)
{
    LibraryContext lc = c.library();
    c.ui.lockMainWindow();
    Begin_Record_Batch(lc);
    for (const int row : rows) {
        if (row < c.lib.MP3_List.count())
            Retag_Row(c, row, run);
        c.ui.yield();
    }
    End_Record_Batch(lc);
    c.ui.unlockMainWindow();
}

// The rows retagged, then the one message about the tracks left alone.
RetagRun retagAndTell(TagEditContext& c, const std::vector<int>& rows)
{
    RetagRun run;
    if (rows.empty())
        return run;
    retagRows(c, rows, run);
    Tell_Retag_Run(c.ui, run);
    return run;
}

bool hasSelection(const TagEditContext& c)
{
    return !c.lib.MP3_List.isEmpty() && c.lib.MP3_List.selected() >= 0;
}

void dirQuickTag(TagEditContext& c, const QString& folder, bool recursive, RetagRun& run, VisitedFolders& visited)
{
    if (!visited.enter(folder))
        return;
    if (recursive) {
        for (const QString& sub : Sub_Folders(folder))
            dirQuickTag(c, Add_Backslash(folder) + sub, true, run, visited);
    }
    c.ui.setLabel17(QStringLiteral("Reading Folder: ") + folder);
    const QStringList files = Mp3_Files(folder);
    c.ui.setProgressRange(0, static_cast<int>(files.size()));
    for (int i = 0; i < files.size(); ++i) {
        c.ui.setProgressValue(i + 1);
        c.ui.setLabel18(QStringLiteral("Quick Retagging Track ") + QString::number(i + 1) + QStringLiteral(" from ")
                        + QString::number(files.size()) + QStringLiteral(": ") + files[i]);
        c.ui.yield();
        const QString path = Add_Backslash(folder) + files[i];
        if (Is_Mpeg(path))
            Retag_File(c, path, run);
    }
}

// A long run behind the library's shield with the progress panel, its
// records written in one batch.
void shieldedRun(TagEditContext& c, const std::function<void()>& work)
{
    LibraryContext lc = c.library();
    c.ui.lockMainWindow();
    c.ui.showProgress();
    c.ui.shieldLibrary();
    Begin_Record_Batch(lc);
    work();
    End_Record_Batch(lc);
    c.ui.setLabel17(QString());
    c.ui.setLabel18(QString());
    c.ui.hideProgress();
    c.ui.unshieldLibrary();
    c.ui.unlockMainWindow();
}

RetagRun retagFolder(TagEditContext& c, bool recursive)
{
    RetagRun run;
    const QString folder = Browse_For_Folder(c.ui);
    if (folder.isEmpty())
        return run;
    LibraryContext lc = c.library();
    shieldedRun(c, [&] { DirQuickTag(c, folder, recursive, run); });
    Tell_Retag_Run(c.ui, run);
    // Tracks of the library that the folder holds show their new tags and
    // dates; the refresh brings in the rest of what changed on disk.
    mnu_Library_Refresh(lc);
    return run;
}

}  // namespace

bool Tag_Unreadable(const TagState& tags, const QString& path)
{
    FileSource file(path);
    char head[3] = {};
    if (!file.isOpen() || !file.readExact(0, head, 3) || std::memcmp(head, "ID3", 3) != 0)
        return false;
    TagView view(file, tags.Read_Other_Versions);
    const auto header = Find_Tag2(view.source());
    return !header || header->End() - 1 > view.source().size();
}

RetagResult Retag_Row(TagEditContext& c, int row, RetagRun& run)
{
    const QString path = rowPath(c.lib.MP3_List, row);
    if (!File_Exists(path))
        return RetagResult::Missing;
    return retag(c, path, row, run);
}

RetagResult Retag_File(TagEditContext& c, const QString& path, RetagRun& run)
{
    if (!File_Exists(path))
        return RetagResult::Missing;
    return retag(c, path, Library_Row_Of(c.lib.MP3_List, path), run);
}

void DirQuickTag(TagEditContext& c, const QString& folder, bool recursive, RetagRun& run)
{
    VisitedFolders visited;
    dirQuickTag(c, folder, recursive, run, visited);
}

QString Retag_Title() { return QStringLiteral("Quick Retag"); }

QString Retag_Unreadable_Text(int count)
{
    return QString::number(count) + QStringLiteral(" tracks were left as they were: their tag could not be read");
}

void Tell_Retag_Run(UiPort& ui, const RetagRun& run)
{
    if (run.unreadable > 0)
        ui.message(Retag_Unreadable_Text(run.unreadable), Retag_Title(), Buttons::Ok, Icon::Information);
}

RetagRun mnu_Retag_Track(TagEditContext& c)
{
    return hasSelection(c) ? retagAndTell(c, {c.lib.MP3_List.selected()}) : RetagRun{};
}

RetagRun mnu_Retag_Selection(TagEditContext& c)
{
    return hasSelection(c) ? retagAndTell(c, c.lib.MP3_List.selectedRows()) : RetagRun{};
}

RetagRun mnu_Retag_Album(TagEditContext& c)
{
    if (!hasSelection(c))
        return {};
    LibraryContext lc = c.library();
    return retagAndTell(c, Album_Rows(lc, {QStringLiteral("Unknown Album"), QStringLiteral("No Album known for this Track"),
                                           QStringLiteral("Unknown Artist and/or Album"),
                                           QStringLiteral("No Artist and/or Album known for this Track")}));
}

RetagRun mnu_Retag_All(TagEditContext& c)
{
    RetagRun run;
    TrackList& list = c.lib.MP3_List;
    if (list.isEmpty())
        return run;
    shieldedRun(c, [&] {
        c.ui.setProgressRange(0, list.count());
        c.ui.setLabel17(QStringLiteral("Retagging all Files..."));
        for (int i = 0; i < list.count(); ++i) {
            c.ui.setProgressValue(i + 1);
            c.ui.setLabel18(QStringLiteral("Retagging Track ") + QString::number(i + 1));
            c.ui.yield();
            Retag_Row(c, i, run);
        }
    });
    Tell_Retag_Run(c.ui, run);
    return run;
}

RetagRun mnu_Retag_Folder(TagEditContext& c) { return retagFolder(c, false); }
RetagRun mnu_Retag_Tree(TagEditContext& c) { return retagFolder(c, true); }

}  // namespace sonorit
