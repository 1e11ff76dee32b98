#include "library_maker.h"

#include <QDir>
#include <QFileInfo>

#include "temp_env.h"

namespace sonorit::test {

TrackRow makeTrack(const QString& artist, const QString& title, const QString& folder, const QString& filename,
                   const QString& album)
{
    return {artist, album, "01", title, "03:25", "1999", "Pop", "No", folder, filename, QString(),
            "2024-05-01 12:00:00", "4096"};
}

QByteArray trackRecord(int id, const QByteArray& text)
{
    const quint32 length = quint32(text.size()) + 1;
    return "TRCK" + QByteArray::number(1000000 + id).right(6) + char(length >> 24) + char(length >> 16)
           + char(length >> 8) + char(length) + text + '\0';
}

QByteArray recordText(const TrackRow& row) { return QStringList(row.begin(), row.end()).join('|').toUtf8(); }

QByteArray idFileBytes(const std::vector<std::int32_t>& ids)
{
    QByteArray out;
    for (const auto id : ids)
        for (int shift = 0; shift < 32; shift += 8)
            out += char(quint32(id) >> shift);
    return out;
}

LibraryMaker& LibraryMaker::track(TrackRow row)
{
    row[ColID] = "TRACK " + QString::number(texts.size() + 1);
    return text(recordText(row));
}

LibraryFiles LibraryMaker::write() const
{
    const QFileInfo info(vkt);
    const LibraryFiles f{vkt, paths.Data_Folder + "Trackfile-" + info.completeBaseName() + ".tri",
                         paths.Data_Folder + "IDfile-" + info.completeBaseName() + ".tri"};
    QDir().mkpath(info.absolutePath() + "/Main");
    QByteArray records;
    std::vector<std::int32_t> free;
    for (size_t i = 0; i < texts.size(); ++i) {
        records += trackRecord(int(i) + 1, texts[i].value_or(QByteArray()));
        if (!texts[i])
            free.push_back(int(i) + 1);
    }
    writeFile(f.trackfile, records);
    writeFile(f.idfile, idFileBytes(free));
    QMap<QString, QString> all{{"LIB_FOLDER", info.absolutePath() + "/Main/"}, {"ALBUMLIB_NAME", f.trackfile},
                               {"FREEID_NAME", f.idfile}, {"ALBUM_COUNT", QString::number(texts.size() - free.size())},
                               {"ID_COUNT", QString::number(texts.size())}};
    all.insert(keys);
    QByteArray ini = "[GENERAL]\n";
    for (auto it = all.begin(); it != all.end(); ++it)
        if (!it.value().isNull())
            ini += (it.key() + '=' + it.value()).toUtf8() + '\n';
    writeFile(vkt, ini);
    return f;
}

}  // namespace sonorit::test
