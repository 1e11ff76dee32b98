#include "id3v1.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "id3v2_writer_target.h"

#include "shell/codepage.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {
// Split at "|" once, misspellings included: the list is the one every genre
// combo shows, so its index is the genre number.
constexpr const char* kGenres =
    "Blues|Classic Rock|Country|Dance|Disco|Funk|Grunge|Hip-Hop|Jazz|Metal|New Age|Oldies|Other|Pop|"
    "R&B|Rap|Reggae|Rock|Techno|Industrial|Alternative|Ska|Death Metal|Pranks|Soundtrack|"
    "Euro-Techno|Ambient|Trip Hop|Vocal|Jazz+Funk|Fusion|Trance|Classical|Instrumental|Acid|House|"
    "Game|Sound Clip|Gospel|Noise|Alt. Rock|Bass|Soul|Punk|Space|Meditative|Instrumental Pop|"
    "Instrumental Rock|Ethnic|Gothic|Darkwave|Techno-Industrial|Electronic|Pop-Folk|Eurodance|"
    "Dream|Southern Rock|Comedy|Cult|Gangsta Rap|Top 40|Christian Rap|Pop/Punk|Jungle|"
    "Native American|Cabaret|New Wave|Phychedelic|Rave|Showtunes|Trailer|Lo-Fi|Tribal|Acid Punk|"
    "Acid Jazz|Polka|Retro|Musical|Rock & Roll|Hard Rock|Folk|Folk/Rock|National Folk|Swing|"
    "Fast-Fusion|Bebob|Latin|Revival|Celtic|Blue Grass|Avantegarde|Gothic Rock|Progressive Rock|"
    "Psychedelic Rock|Symphonic Rock|Slow Rock|Big Band|Chorus|Easy Listening|Acoustic|Humour|"
    "Speech|Chanson|Opera|Chamber Music|Sonata|Symphony|Booty Bass|Primus|Porn Groove|Satire|"
    "Slow Jam|Club|Tango|Samba|Folklore|Ballad|Power Ballad|Rhythmic Soul|Freestyle|Duet|"
    "Punk Rock|Drum Solo|A Capella|Euro-House|Dance Hall|Goa|Drum & Bass|Club-House|Hardcore|"
    "Terror|Indie|Brit Pop|Negerpunk|Polsk Punk|Beat|Christian Gangsta Rap|Heavy Metal|"
    "Black Metal|Crossover|Comteporary Christian|Christian Rock|Merengue|Salsa|Trash Metal|Anime|"
    "JPop|Synth Pop|Unknown|User Defined";

constexpr qint64 kTagSize = 128;
constexpr qint64 kBodySize = 125;

// The 125 bytes behind "TAG", field by field in file order.
void decodeBody(const char* b, Tag1Record& r)
{
    r.Title = fromCp1252(b, 30);
    r.Artist = fromCp1252(b + 30, 30);
    r.Album = fromCp1252(b + 60, 30);
    r.Year = fromCp1252(b + 90, 4);
    r.Comment = fromCp1252(b + 94, 28);
    r.ZeroByte = static_cast<quint8>(b[122]);
    r.Track = static_cast<quint8>(b[123]);
    r.Genre = static_cast<quint8>(b[124]);
}

// A fixed field is exactly its width on disk, whatever the conversion made
// of characters outside the page.
QByteArray fixedBytes(const QString& text, int width)
{
    QByteArray b = toCp1252(text).left(width);
    return b.leftJustified(width, ' ');
}

QByteArray encodeBody(const Tag1Record& r)
{
    QByteArray b;
    b.reserve(kBodySize);
    b += fixedBytes(r.Title, 30);
    b += fixedBytes(r.Artist, 30);
    b += fixedBytes(r.Album, 30);
    b += fixedBytes(r.Year, 4);
    b += fixedBytes(r.Comment, 28);
    b += static_cast<char>(r.ZeroByte);
    b += static_cast<char>(r.Track);
    b += static_cast<char>(r.Genre);
    return b;
}

void blank(Tag1Record& r)
{
    const quint8 zeroByte = r.ZeroByte;  // left as it was
    r = Tag1Record{};
    r.ZeroByte = zeroByte;
}

void reportError(UiPort& ui, const QString& description)
{
    ui.message(description, QStringLiteral(" Error"), Buttons::Ok, Icon::Critical);
}

QString shortFileText() { return QStringLiteral("Bad file position: the file is shorter than a tag"); }
}  // namespace

const QStringList& Genre_Names()
{
    static const QStringList names = QString::fromLatin1(kGenres).split(QLatin1Char('|'));
    return names;
}

int Genre_Index(const QString& name)
{
    const QStringList& names = Genre_Names();
    for (int i = 0; i < 148; ++i) {
        if (names[i] == name)
            return i;
    }
    return -1;
}

int Tag1_Genre_Entry(quint8 genre) { return genre >= 150 ? 148 : genre; }

QString Tag1_Track_Text(quint8 track) { return QString::number(track + 100).right(2); }

bool Parse_Tag1(ByteSource& src, Tag1Record& record)
{
    blank(record);
    const qint64 at = src.size() - kTagSize;
    char buf[kTagSize];
    if (at < 0 || !src.readExact(at, buf, kTagSize) || qstrncmp(buf, "TAG", 3) != 0)
        return false;
    decodeBody(buf + 3, record);
    return true;
}

void Read_Tag1(TagState& state, const QString& path, UiPort& ui)
{
    blank(state.Tag1_Record);
    // Opened for reading and writing as the program always did, so a file
    // that cannot be written is reported already here.
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) {
        reportError(ui, file.errorString());
        return;
    }
    const qint64 at = file.size() - kTagSize;
    if (at < 0) {
        reportError(ui, shortFileText());
        return;
    }
    char buf[kTagSize];
    if (!file.seek(at) || file.read(buf, kTagSize) != kTagSize) {
        reportError(ui, file.errorString());
        return;
    }
    if (qstrncmp(buf, "TAG", 3) == 0)
        decodeBody(buf + 3, state.Tag1_Record);
}

bool Write_Tag1(const TagState& state, const QString& path, UiPort& ui)
{
    // A file made read-only stays so, even where the system would let the
    // administrator write it.
    if (QFileInfo::exists(path) && !Is_Writable_File(path)) {
        reportError(ui, QString::fromLocal8Bit(std::strerror(EACCES)));
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) {
        reportError(ui, file.errorString());
        return false;
    }
    const qint64 length = file.size();
    const qint64 at = length - kTagSize;
    if (at < 0) {
        reportError(ui, shortFileText());
        return false;
    }
    char head[3];
    if (!file.seek(at) || file.read(head, 3) != 3) {
        reportError(ui, file.errorString());
        return false;
    }
    // Over the old tag in place, or a new one appended: the audio never moves.
    const bool hasTag = qstrncmp(head, "TAG", 3) == 0;
    const QByteArray bytes = (hasTag ? QByteArray() : QByteArray("TAG")) + encodeBody(state.Tag1_Record);
    if (!file.seek(hasTag ? at + 3 : length) || file.write(bytes) != bytes.size() || !file.flush()) {
        reportError(ui, file.errorString());
        return false;
    }
    return true;
}

}  // namespace sonorit
