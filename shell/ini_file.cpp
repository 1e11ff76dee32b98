#include "ini_file.h"

#include <QFile>
#include <QHash>
#include <QStringList>
#include <map>
#include <sys/stat.h>

#include "bounded_read.h"
#include "codepage.h"
#include "durable_file.h"

namespace sonorit {

namespace {

// An INI file of the program is a few kilobytes; this bound only keeps a
// wrong path from being read without end.
constexpr qint64 kMaxIniBytes = 64LL << 20;

// The section name of a "[name]" line, or a null string for other lines.
QString sectionOf(const QString& line)
{
    const QString t = line.trimmed();
    if (!t.startsWith(QLatin1Char('[')))
        return QString();
    const int close = t.indexOf(QLatin1Char(']'));
    return (close < 0 ? t.mid(1) : t.mid(1, close - 1)).trimmed();
}

bool keyOf(const QString& line, QString* key, QString* value)
{
    const int eq = line.indexOf(QLatin1Char('='));
    if (eq < 0)
        return false;
    *key = line.left(eq).trimmed();
    if (value)
        *value = line.mid(eq + 1).trimmed();
    return !key->isEmpty();
}

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString indexKey(const QString& section, const QString& key)
{
    return section.toLower() + QLatin1Char('\n') + key.toLower();
}

// A file as read: its lines and, for each section and key, the line of the
// first match. Kept while the file stays the same (device, inode, size and
// time), so that a command reading many keys reads and splits it once.
struct IniText {
    dev_t dev = 0;
    ino_t ino = 0;
    off_t size = -1;
    timespec mtime{};
    QStringList lines;
    QHash<QString, int> first;
};

void indexLines(IniText& f)
{
    QString section;
    bool inSection = false;
    for (int i = 0; i < f.lines.size(); ++i) {
        const QString s = sectionOf(f.lines[i]);
        if (!s.isNull()) {
            section = s;
            inSection = true;
            continue;
        }
        QString k;
        if (inSection && keyOf(f.lines[i], &k, nullptr)) {
            const QString key = indexKey(section, k);
            if (!f.first.contains(key))
                f.first.insert(key, i);
        }
    }
}

std::map<QString, IniText>& cache()
{
    static std::map<QString, IniText> files;
    return files;
}

// The text of `path`, or null when there is no readable regular file.
const IniText* readText(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || !S_ISREG(st.st_mode)) {
        cache().erase(path);
        return nullptr;
    }
    auto it = cache().find(path);
    if (it != cache().end() && it->second.dev == st.st_dev && it->second.ino == st.st_ino
        && it->second.size == st.st_size && it->second.mtime.tv_sec == st.st_mtim.tv_sec
        && it->second.mtime.tv_nsec == st.st_mtim.tv_nsec)
        return &it->second;
    QByteArray bytes;
    if (Read_Regular_File(path, kMaxIniBytes, &bytes) != ReadResult::Read) {
        cache().erase(path);
        return nullptr;
    }
    IniText& f = cache()[path];
    f = IniText{st.st_dev, st.st_ino, bytes.size() == st.st_size ? st.st_size : -1, st.st_mtim, {}, {}};
    f.lines = decodeFileText(bytes).split(QLatin1Char('\n'));
    if (!f.lines.isEmpty() && f.lines.last().isEmpty())
        f.lines.removeLast();
    for (QString& l : f.lines) {
        if (l.endsWith(QLatin1Char('\r')))
            l.chop(1);
    }
    indexLines(f);
    return &f;
}

// Sets `key` in the first matching section of `lines`: the first matching
// key is replaced in place, a missing key goes behind the last non-blank line
// of its section, a missing section is appended. False when the key already
// stood so.
bool setKey(QStringList& lines, const QString& section, const QString& key, const QString& value)
{
    const QString entry = key + QLatin1Char('=') + value;
    int sectionStart = -1;  // line index of the first matching section header
    int insertAt = -1;      // behind the last non-blank line of that section
    bool inSection = false;
    for (int i = 0; i < lines.size(); ++i) {
        const QString s = sectionOf(lines[i]);
        if (!s.isNull()) {
            if (inSection)
                break;  // the first matching section ended without the key
            inSection = sameName(s, section);
            if (inSection) {
                sectionStart = i;
                insertAt = i + 1;
            }
            continue;
        }
        if (!inSection)
            continue;
        QString k;
        if (keyOf(lines[i], &k, nullptr) && sameName(k, key)) {
            if (lines[i] == entry)
                return false;
            lines[i] = entry;
            return true;
        }
        if (!lines[i].trimmed().isEmpty())
            insertAt = i + 1;
    }
    if (sectionStart < 0)
        lines << QLatin1Char('[') + section + QLatin1Char(']') << entry;
    else
        lines.insert(insertAt, entry);
    return true;
}

// Caches the text this program just wrote to `path`, stamped with the file's
// identity as it now stands on disk.
void remember(const QString& path, const QByteArray& bytes, QStringList lines)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || !S_ISREG(st.st_mode) || st.st_size != bytes.size())
        return;
    IniText& f = cache()[path];
    f = IniText{st.st_dev, st.st_ino, st.st_size, st.st_mtim, std::move(lines), {}};
    indexLines(f);
}

}  // namespace

QString IniFile::read(const QString& section, const QString& key, const QString& defaultValue) const
{
    const IniText* text = readText(path_);
    const int at = text ? text->first.value(indexKey(section, key), -1) : -1;
    if (at < 0)
        return defaultValue.left(limit_);
    QString k, v;
    keyOf(text->lines[at], &k, &v);
    return v.left(limit_);
}

bool IniFile::write(const QString& section, const QString& key, const QString& value) const
{
    return write(section, {{key, value}});
}

bool IniFile::write(const QString& section, const QList<QPair<QString, QString>>& entries) const
{
    const IniText* text = readText(path_);
    QStringList lines = text ? text->lines : QStringList();
    bool changed = !text;
    for (const auto& [key, value] : entries)
        changed = setKey(lines, section, key, value) || changed;
    if (!changed)
        return true;  // every key already stands so: no rewrite

    QByteArray bytes;
    for (const QString& l : lines) {
        bytes += l.toUtf8();
        bytes += '\n';
    }
    cache().erase(path_);
    if (!Write_File_Durably(path_, bytes))
        return false;
    // What was just written is what the next read would find: keep it, so
    // that a command writing key after key does not read the file back.
    remember(path_, bytes, std::move(lines));
    return true;
}

QString GetPrivateProfileString(const QString& section, const QString& key, const QString& defaultValue,
                                const QString& file)
{
    return IniFile(file).read(section, key, defaultValue);
}

bool WritePrivateProfileString(const QString& section, const QString& key, const QString& value,
                               const QString& file)
{
    return IniFile(file).write(section, key, value);
}

}  // namespace sonorit
