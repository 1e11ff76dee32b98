#include "ini_file.h"

#include <QFile>
#include <QSaveFile>
#include <QStringList>

#include "codepage.h"

namespace sonorit {

namespace {

QStringList readLines(const QString& path, bool* exists)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        *exists = false;
        return {};
    }
    *exists = true;
    const QString text = decodeFileText(f.readAll());
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QString& l : lines) {
        if (l.endsWith(QLatin1Char('\r')))
            l.chop(1);
    }
    return lines;
}

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

}  // namespace

QString IniFile::read(const QString& section, const QString& key, const QString& defaultValue) const
{
    bool exists = false;
    const QStringList lines = readLines(path_, &exists);
    bool inSection = false;
    for (const QString& line : lines) {
        const QString s = sectionOf(line);
        if (!s.isNull()) {
            inSection = sameName(s, section);
            continue;
        }
        QString k, v;
        if (inSection && keyOf(line, &k, &v) && sameName(k, key))
            return v.left(limit_);
    }
    return defaultValue.left(limit_);
}

bool IniFile::write(const QString& section, const QString& key, const QString& value) const
{
    bool exists = false;
    QStringList lines = readLines(path_, &exists);
    const QString entry = key + QLatin1Char('=') + value;

    int sectionStart = -1;  // line index of the first matching section header
    int insertAt = -1;      // behind the last non-blank line of that section
    bool done = false;
    bool inSection = false;
    for (int i = 0; i < lines.size() && !done; ++i) {
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
                return true;  // already stands so: no rewrite
            lines[i] = entry;
            done = true;
        } else if (!lines[i].trimmed().isEmpty()) {
            insertAt = i + 1;
        }
    }
    if (!done) {
        if (sectionStart < 0) {
            lines << QLatin1Char('[') + section + QLatin1Char(']') << entry;
        } else {
            lines.insert(insertAt, entry);
        }
    }

    QSaveFile out(path_);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    QByteArray bytes;
    for (const QString& l : lines) {
        bytes += l.toUtf8();
        bytes += '\n';
    }
    if (out.write(bytes) != bytes.size())
        return false;
    return out.commit();
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
