// sonorit-cli write-tag1, write-tag2, retag and strip: the tag writes of the
// tag panels and of the quick retag, on one file each.
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "cli/cli_context.h"
#include "shell/helpers.h"
#include "shell/settings_families.h"
#include "tags/id3v1.h"
#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/mpeg_info.h"
#include "tags/strip.h"
#include "tags/tag_swap.h"

namespace sonorit::cli {

namespace {

// "--name value" pairs after the file; false on anything else.
bool parseOptions(const QStringList& args, const QStringList& known, QMap<QString, QString>* values)
{
    for (int i = 1; i < args.size(); ++i) {
        QString name = args[i];
        QString value;
        const int eq = name.indexOf(QLatin1Char('='));
        if (eq > 0) {
            value = name.mid(eq + 1);
            name.truncate(eq);
        } else if (i + 1 < args.size()) {
            value = args[++i];
        } else {
            return false;
        }
        if (!name.startsWith(QLatin1String("--")) || !known.contains(name.mid(2)))
            return false;
        values->insert(name.mid(2), value);
    }
    return true;
}

bool isWholeNumber(const QString& text, int lowest, int highest, int* out)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    if (!ok || n < lowest || n > highest)
        return false;
    *out = n;
    return true;
}

QString trimmed(const QString& s) { return s.trimmed(); }

int usageError(const QString& text)
{
    reportError(text);
    return ExitUsage;
}

const CliCommand writeTag1("write-tag1",
                           "write-tag1 FILE [--title T] [--artist A] [--album A] [--year Y] [--comment C] "
                           "[--track N] [--genre INDEX]",
                           [](CliContext& c, const QStringList& args) {
    QMap<QString, QString> o;
    if (args.isEmpty() || !parseOptions(args, {"title", "artist", "album", "year", "comment", "track", "genre"}, &o))
        return int(ExitUsage);
    const QString path = args[0];
    if (!QFileInfo(path).isFile()) {
        reportError(QStringLiteral("file not found: ") + path);
        return int(ExitFailed);
    }
    TagState state(c.app.paths.Data_Folder);
    Read_Tag1(state, path, c.ui);
    Tag1Record& r = state.Tag1_Record;
    // The record is filled as the Tag1 panel fills it from its boxes.
    r.Title = trimmed(o.value("title", r.Title.shown()));
    r.Artist = trimmed(o.value("artist", r.Artist.shown()));
    r.Album = trimmed(o.value("album", r.Album.shown()));
    r.Year = o.value("year", r.Year.shown());
    r.Comment = o.value("comment", r.Comment.shown());
    if (o.contains("track")) {
        const long long track = Val(o.value("track"));
        if (track < 0 || track > 255)
            return usageError(QStringLiteral("--track must be a number from 0 to 255"));
        r.Track = quint8(track);
    }
    if (o.contains("genre")) {
        int genre = 0;
        if (!isWholeNumber(o.value("genre"), 0, 149, &genre))
            return usageError(QStringLiteral("--genre must be a genre index from 0 to 149"));
        r.Genre = quint8(genre);
    }
    r.ZeroByte = 0;
    if (!Write_Tag1(state, path, c.ui)) {
        c.ui.message(QStringLiteral("MP3 tag v1.1 could not been saved"), QStringLiteral("Tag Save Failure"),
                     Buttons::Ok, Icon::None);
        return int(ExitFailed);
    }
    return int(ExitOk);
});

const CliCommand writeTag2("write-tag2",
                           "write-tag2 FILE [--artist A] [--album A] [--title T] [--track N] [--year Y] "
                           "[--genre NAME] [--va yes|no] [--comment C] [--cover FILE.jpg]",
                           [](CliContext& c, const QStringList& args) {
    QMap<QString, QString> o;
    if (args.isEmpty()
        || !parseOptions(args, {"artist", "album", "title", "track", "year", "genre", "va", "comment", "cover"}, &o))
        return int(ExitUsage);
    const QString path = QFileInfo(args[0]).absoluteFilePath();
    if (!QFileInfo(path).isFile()) {
        reportError(QStringLiteral("file not found: ") + path);
        return int(ExitFailed);
    }
    if (o.contains("va") && o.value("va") != QLatin1String("yes") && o.value("va") != QLatin1String("no"))
        return usageError(QStringLiteral("--va must be yes or no"));
    QString cover;
    if (o.contains("cover")) {
        cover = QFileInfo(o.value("cover")).absoluteFilePath();
        if (!QFileInfo(cover).isFile() || cover.right(4).toLower() != QLatin1String(".jpg"))
            return usageError(QStringLiteral("--cover must name an existing .jpg file"));
    }
    if (auto e = Get_Tag_Settings(c.app)) {
        reportError(e->text);
        return int(ExitFailed);
    }

    // What the Tag2 panel holds after the track was picked.
    TagState state(c.app.paths.Data_Folder);
    Read_Tag2(state, path, Tag2Mode::Panel);
    Show_Mpeg_Info(state, path);
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
    if (!cover.isEmpty()) {
        // The chosen picture goes to "Cover.jpg" as the panel's cover button does.
        QFile::remove(state.coverPath());
        QFile::copy(cover, state.coverPath());
        state.Tag2_Fields.Cover_File = cover;
    }

    // The Write button's filling of the fields.
    Tag2FieldSet& f = state.Tag2_Fields;
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
    if (f.Frames.isEmpty()) {
        const qint64 frames = Count_Mpeg_Frames(path);
        if (frames > 0)
            f.Frames = QString::number(frames);
    }
    if (f.Comment.isEmpty())
        f.Comment = TagStamp();

    const bool ok = Write_Through_Temp(c.app.paths.Data_Folder, path, c.ui,
                                       [&](const QString& source, const QString& target) {
                                           return Write_Tag2_Panel(state, c.app.Tag_Options, source, target);
                                       });
    return int(ok ? ExitOk : ExitFailed);
});

const CliCommand retag("retag", "retag FILE", [](CliContext& c, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    const QString path = QFileInfo(args[0]).absoluteFilePath();
    if (!QFileInfo(path).isFile()) {
        reportError(QStringLiteral("file not found: ") + path);
        return int(ExitFailed);
    }
    if (auto e = Get_Tag_Settings(c.app)) {
        reportError(e->text);
        return int(ExitFailed);
    }
    TagState state(c.app.paths.Data_Folder);
    Read_Tag2(state, path, Tag2Mode::Quick);
    const bool ok = Write_Through_Temp(c.app.paths.Data_Folder, path, c.ui,
                                       [&](const QString& source, const QString& target) {
                                           return Write_Tag2_Quick(state, c.app.Tag_Options, source, target);
                                       });
    return int(ok ? ExitOk : ExitFailed);
});

const CliCommand strip("strip", "strip SRC DST", [](CliContext&, const QStringList& args) {
    if (args.size() != 2)
        return int(ExitUsage);
    return int(Strip_Tag2(args[0], args[1]) ? ExitOk : ExitFailed);
});

}  // namespace
}  // namespace sonorit::cli
