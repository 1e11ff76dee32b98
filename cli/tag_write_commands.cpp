// sonorit-cli write-tag1, write-tag2, retag and strip: the tag writes of the
// tag panels and of the quick retag, on one or more files with the same
// options. The status is 0 when every file was written, 1 when some failed.
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "cli/cli_context.h"
#include "cli/tag_verb_args.h"
#include "shell/helpers.h"
#include "shell/settings_families.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tags/other_versions.h"
#include "tags/strip.h"
#include "tags/tag_swap.h"

namespace sonorit::cli {

namespace {

int usageError(const QString& text)
{
    reportError(text);
    return ExitUsage;
}

// The path of an existing regular file, or "" after saying why not.
QString existingFile(const QString& given)
{
    const QFileInfo info(QFileInfo(given).absoluteFilePath());
    if (info.isFile())
        return info.filePath();
    reportError((info.exists() ? QStringLiteral("not a regular file: ") : QStringLiteral("file not found: "))
                + info.filePath());
    return {};
}

// The checks a year box makes: up to four digits, or nothing.
bool isYear(const QString& text)
{
    return text.isEmpty() || (text.size() <= 4 && Is_Number_In(text, 0, 9999));
}

// What the tag writes of a verb need before the first file: the tag options
// of the settings and the data folder that takes "Temp.mp3".
bool prepareTagWrites(CliContext& c)
{
    if (auto e = Get_Tag_Settings(c.app)) {
        reportError(e->text);
        return false;
    }
    QDir().mkpath(c.app.paths.Data_Folder);
    return true;
}

template <typename WriteOne>
int forEachFile(const QStringList& files, WriteOne writeOne)
{
    bool all = true;
    for (const QString& file : files) {
        const QString path = existingFile(file);
        all = !path.isEmpty() && writeOne(path) && all;
    }
    return all ? ExitOk : ExitFailed;
}

// --- write-tag1 ----------------------------------------------------------------

QString checkTag1Options(const QMap<QString, QString>& o)
{
    const std::pair<const char*, int> widths[] = {{"title", 30}, {"artist", 30}, {"album", 30}, {"comment", 28}};
    for (const auto& [name, width] : widths) {
        if (o.value(name).trimmed().size() > width)
            return QStringLiteral("--%1 holds at most %2 characters").arg(QLatin1String(name)).arg(width);
    }
    if (o.contains("year") && !isYear(o.value("year")))
        return QStringLiteral("--year must be a year of up to four digits");
    if (o.contains("track") && !Is_Number_In(o.value("track"), 0, 255))
        return QStringLiteral("--track must be a number from 0 to 255");
    if (o.contains("genre") && !Is_Number_In(o.value("genre"), 0, 149))
        return QStringLiteral("--genre must be a genre index from 0 to 149");
    return {};
}

bool writeTag1One(CliContext& c, const QString& path, const QMap<QString, QString>& o)
{
    TagState state(c.app.paths.Data_Folder);
    Read_Tag1(state, path, c.ui);
    Tag1Record& r = state.Tag1_Record;
    // The record is filled as the Tag1 panel fills it from its boxes.
    r.Title = o.value("title", r.Title.shown()).trimmed();
    r.Artist = o.value("artist", r.Artist.shown()).trimmed();
    r.Album = o.value("album", r.Album.shown()).trimmed();
    r.Year = o.value("year", r.Year.shown());
    r.Comment = o.value("comment", r.Comment.shown());
    if (o.contains("track"))
        r.Track = quint8(o.value("track").toInt());
    if (o.contains("genre"))
        r.Genre = quint8(o.value("genre").toInt());
    r.ZeroByte = 0;
    if (Write_Tag1(state, path, c.ui))
        return true;
    c.ui.message(QStringLiteral("MP3 tag v1.1 could not been saved"), QStringLiteral("Tag Save Failure"), Buttons::Ok,
                 Icon::None);
    return false;
}

const CliCommand writeTag1("write-tag1",
                           "write-tag1 FILE... [--title T] [--artist A] [--album A] [--year Y] [--comment C] "
                           "[--track N] [--genre INDEX]",
                           [](CliContext& c, const QStringList& args) {
    TagVerbArgs a;
    QString problem = Parse_Tag_Verb_Args(args, {"title", "artist", "album", "year", "comment", "track", "genre"}, a);
    if (problem.isEmpty())
        problem = checkTag1Options(a.options);
    if (!problem.isEmpty())
        return usageError(problem);
    return forEachFile(a.files, [&](const QString& path) { return writeTag1One(c, path, a.options); });
});

// --- write-tag2 ----------------------------------------------------------------

QString checkTag2Options(const QMap<QString, QString>& o)
{
    if (o.contains("va") && o.value("va") != QLatin1String("yes") && o.value("va") != QLatin1String("no"))
        return QStringLiteral("--va must be yes or no");
    if (o.contains("track") && !o.value("track").trimmed().isEmpty() && !Is_Number_In(o.value("track").trimmed(), 0, 99))
        return QStringLiteral("--track must be a number from 0 to 99, or empty to remove it");
    if (o.contains("year") && !isYear(o.value("year").trimmed()))
        return QStringLiteral("--year must be a year of up to four digits, or empty to remove it");
    if (o.contains("cover")) {
        const QFileInfo cover(o.value("cover"));
        if (!cover.isFile() || cover.suffix().toLower() != QLatin1String("jpg"))
            return QStringLiteral("--cover must name an existing .jpg file");
    }
    return {};
}

bool writeTag2One(CliContext& c, const QString& path, const QMap<QString, QString>& o)
{
    // What the Tag2 panel holds after the track was picked. The cover of
    // the tag stays where it is; only a new one is taken from a file.
    TagState state(c.app.paths.Data_Folder);
    state.Covers_To_File = false;
    {
        FileSource file(path);
        TagView view(file, c.app.Tag_Read_Other);
        Read_Tag2(state, view.source(), path, Tag2Mode::Panel);
        Show_Mpeg_Info(state, view.source());
        // Counted already when the labels needed it.
        if (state.Tag2_Fields.Frames.isEmpty()) {
            const qint64 frames = Count_Mpeg_Frames(view.source());
            if (frames > 0)
                state.Tag2_Fields.Frames = QString::number(frames);
        }
    }
    state.Read_Other_Versions = c.app.Tag_Read_Other;
    Tag2Panel& p = state.Tag2_Panel;
    if (p.Tag2_Text_Comment.isEmpty())
        p.Tag2_Text_Comment = TagStamp();
    p.Tag2_Text_Artist = o.value("artist", p.Tag2_Text_Artist);
    p.Tag2_Text_Album = o.value("album", p.Tag2_Text_Album);
    p.Tag2_Text_Title = o.value("title", p.Tag2_Text_Title);
    p.Tag2_Text_Track = o.value("track", p.Tag2_Text_Track);
    p.Tag2_Text_Year = o.value("year", p.Tag2_Text_Year);
    p.Tag2_Text_Genre = o.value("genre", p.Tag2_Text_Genre);
    p.Tag2_Text_Comment = o.value("comment", p.Tag2_Text_Comment);
    if (o.contains("va"))
        p.Tag2_Combo_VA = o.value("va") == QLatin1String("yes") ? 1 : 0;
    Tag2FieldSet& f = state.Tag2_Fields;
    if (o.contains("cover")) {
        // The chosen picture goes to "Cover.jpg" as the panel's cover button does.
        const QString cover = QFileInfo(o.value("cover")).absoluteFilePath();
        QFile::remove(state.coverPath());
        QFile::copy(cover, state.coverPath());
        f.Cover_File = cover;
    }

    // The Write button's filling of the fields.
    f.Artist = p.Tag2_Text_Artist.trimmed();
    f.Album = p.Tag2_Text_Album.trimmed();
    f.Year = p.Tag2_Text_Year.trimmed();
    f.Title = p.Tag2_Text_Title.trimmed();
    f.Genre = p.Tag2_Text_Genre.trimmed();
    f.Comment = p.Tag2_Text_Comment.trimmed();
    const QString track = p.Tag2_Text_Track.trimmed();
    f.Track = track.isEmpty() ? QString() : QString::number(Val(track) + 1000).right(2);
    f.VA = p.Tag2_Combo_VA == 1 ? QStringLiteral("Various Artists") : QString();
    state.Cover_Changed = f.Cover_File != f.Cover_Original;
    if (f.Comment.isEmpty())
        f.Comment = TagStamp();
    return Write_Through_Temp(c.app.paths.Data_Folder, path, c.ui, [&](const QString& source, const QString& target) {
        return Write_Tag2_Panel(state, c.app.Tag_Options, source, target);
    });
}

const CliCommand writeTag2("write-tag2",
                           "write-tag2 FILE... [--artist A] [--album A] [--title T] [--track N] [--year Y] "
                           "[--genre NAME] [--va yes|no] [--comment C] [--cover FILE.jpg]",
                           [](CliContext& c, const QStringList& args) {
    TagVerbArgs a;
    QString problem = Parse_Tag_Verb_Args(
        args, {"artist", "album", "title", "track", "year", "genre", "va", "comment", "cover"}, a);
    if (problem.isEmpty())
        problem = checkTag2Options(a.options);
    if (!problem.isEmpty())
        return usageError(problem);
    if (!prepareTagWrites(c))
        return int(ExitFailed);
    return forEachFile(a.files, [&](const QString& path) { return writeTag2One(c, path, a.options); });
});

// --- retag -----------------------------------------------------------------------

bool retagOne(CliContext& c, const QString& path)
{
    TagState state(c.app.paths.Data_Folder);
    state.Covers_To_File = false;  // the quick writer stores no picture of its own
    state.Read_Other_Versions = c.app.Tag_Read_Other;
    Read_Tag2(state, path, Tag2Mode::Quick);
    return Write_Through_Temp(c.app.paths.Data_Folder, path, c.ui, [&](const QString& source, const QString& target) {
        return Write_Tag2_Quick(state, c.app.Tag_Options, source, target);
    });
}

const CliCommand retag("retag", "retag FILE...", [](CliContext& c, const QStringList& args) {
    TagVerbArgs a;
    if (const QString problem = Parse_Tag_Verb_Args(args, {}, a); !problem.isEmpty())
        return usageError(problem);
    if (!prepareTagWrites(c))
        return int(ExitFailed);
    return forEachFile(a.files, [&](const QString& path) { return retagOne(c, path); });
});

const CliCommand strip("strip", "strip SRC DST", [](CliContext&, const QStringList& args) {
    if (args.size() != 2)
        return int(ExitUsage);
    return int(Strip_Tag2(args[0], args[1]) ? ExitOk : ExitFailed);
});

}  // namespace
}  // namespace sonorit::cli
