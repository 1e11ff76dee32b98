#include "library_maker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "temp_env.h"

namespace sonorit::test {

TrackRow makeTrack(const QString& artist, const QString& title, const QString& folder, const QString& filename,
                   const QString& album)
{
    return {artist,  album,
            QStringLiteral("01"), title,
            QStringLiteral("03:25"), QStringLiteral("1999"),
            QStringLiteral("Pop"), QStringLiteral("No"),
            folder, filename,
            QString(), QStringLiteral("2024-05-01 12:00:00"),
            QStringLiteral("4096")};
}

QByteArray trackRecord(int id, const QByteArray& text)
{
    QByteArray r = "TRCK" + QByteArray::number(1000000 + id).right(6);
    const quint32 length = quint32(text.size()) + 1;
    r.append(char(length >> 24)).append(char(length >> 16)).append(char(length >> 8)).append(char(length));
    return r + text + '\0';
}

QByteArray recordText(const TrackRow& row)
{
    QStringList fields(row.begin(), row.end());
    return fields.join(QLatin1Char('|')).toUtf8();
}

QByteArray idFileBytes(const std::vector<std::int32_t>& ids)
{
    QByteArray out;
    for (const std::int32_t id : ids) {
        const auto v = static_cast<std::uint32_t>(id);
        out.append(char(v)).append(char(v >> 8)).append(char(v >> 16)).append(char(v >> 24));
    }
    return out;
}

LibraryMaker::LibraryMaker(const AppPaths& paths, QString vktPath) : paths_(paths), vkt_(std::move(vktPath)) {}

LibraryMaker& LibraryMaker::track(TrackRow row)
{
    row[ColID] = QStringLiteral("TRACK ") + QString::number(slotCount() + 1);
    slots_.emplace_back(recordText(row));
    return *this;
}

LibraryMaker& LibraryMaker::text(const QByteArray& bytes)
{
    slots_.emplace_back(bytes);
    return *this;
}

LibraryMaker& LibraryMaker::freeSlot()
{
    slots_.emplace_back(std::nullopt);
    return *this;
}

LibraryMaker& LibraryMaker::key(const QString& name, const QString& value)
{
    keys_[name] = value;
    return *this;
}

LibraryMaker& LibraryMaker::freeIds(std::vector<std::int32_t> ids)
{
    freeIds_ = std::move(ids);
    return *this;
}

LibraryFiles LibraryMaker::write() const
{
    LibraryFiles f;
    f.vkt = vkt_;
    // The first free pair of names from 000 on, as a new library takes them.
    for (int n = 1000;; ++n) {
        const QString digits = QString::number(n).right(3);
        f.trackfile = paths_.Data_Folder + QStringLiteral("Trackfile") + digits + QStringLiteral(".tri");
        f.idfile = paths_.Data_Folder + QStringLiteral("IDfile") + digits + QStringLiteral(".tri");
        if (!QFileInfo::exists(f.trackfile) && !QFileInfo::exists(f.idfile))
            break;
    }
    f.mainFolder = QFileInfo(vkt_).absolutePath() + QStringLiteral("/Main/");
    QDir().mkpath(f.mainFolder);
    QDir().mkpath(paths_.Data_Folder);

    QByteArray trackBytes;
    std::vector<std::int32_t> free;
    int used = 0;
    for (size_t i = 0; i < slots_.size(); ++i) {
        const int id = static_cast<int>(i) + 1;
        trackBytes += trackRecord(id, slots_[i].value_or(QByteArray()));
        if (slots_[i])
            ++used;
        else
            free.push_back(id);
    }
    writeFile(f.trackfile, trackBytes);
    writeFile(f.idfile, idFileBytes(freeIds_.value_or(free)));

    QMap<QString, QString> keys{{QStringLiteral("LIB_FOLDER"), f.mainFolder},
                                {QStringLiteral("ALBUMLIB_NAME"), f.trackfile},
                                {QStringLiteral("FREEID_NAME"), f.idfile},
                                {QStringLiteral("ALBUM_COUNT"), QString::number(used)},
                                {QStringLiteral("ID_COUNT"), QString::number(slotCount())}};
    for (auto it = keys_.begin(); it != keys_.end(); ++it)
        keys[it.key()] = it.value();
    QByteArray ini = "[GENERAL]\n";
    for (const char* name : {"LIB_FOLDER", "BAK_FOLDER", "ALBUMLIB_NAME", "FREEID_NAME", "ALBUM_COUNT", "ID_COUNT"}) {
        const QString value = keys.take(QLatin1String(name));
        if (!value.isNull())
            ini += QByteArray(name) + '=' + value.toUtf8() + '\n';
    }
    for (auto it = keys.begin(); it != keys.end(); ++it) {
        if (!it.value().isNull())
            ini += it.key().toUtf8() + '=' + it.value().toUtf8() + '\n';
    }
    writeFile(f.vkt, ini);
    return f;
}

}  // namespace sonorit::test
