#include "app/storage.h"

#include <stdexcept>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace roamwise::app {

std::function<void()> beforeCommitForTesting;

void saveFile(const QString& path, std::string_view bytes) {
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath())) {
        throw std::runtime_error(path.toStdString() + ": cannot make its folder");
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    }
    const auto size = static_cast<qint64>(bytes.size());
    if (file.write(bytes.data(), size) != size) {
        const std::string why = file.errorString().toStdString();
        file.cancelWriting();
        throw std::runtime_error(path.toStdString() + ": " + why);
    }
    if (beforeCommitForTesting) beforeCommitForTesting();
    if (!file.commit()) {
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    }
}

QString UserFiles::setAside(const QString& path, tripkit::Day today) {
    const QString base = path + asideSuffix + QString::fromStdString(today.text());
    QString aside = base;
    for (int n = 2; QFileInfo::exists(aside); ++n) aside = base + "-" + QString::number(n);
    // A rename keeps every byte; when even that fails the file stays where
    // it is and the next save replaces it, which is all that can be done.
    QFile::rename(path, aside);
    return aside;
}

QString Cache::path(std::string_view name) const {
    return folder + "/" + QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

std::optional<simdjson::padded_string> Cache::read(std::string_view name) const {
    return tripkit::FileReader::read(path(name).toStdString());
}

void Cache::write(std::string_view name, std::string_view bytes) const { saveFile(path(name), bytes); }

std::vector<CacheEntry> Cache::entries() const {
    std::vector<CacheEntry> out;
    const QDir dir(folder);
    const QFileInfoList files = dir.entryInfoList({"*.json"}, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        out.push_back({file.fileName().toStdString(), file.size(),
                       file.lastModified().toUTC().toString(Qt::ISODate).toStdString()});
    }
    return out;
}

}  // namespace roamwise::app
