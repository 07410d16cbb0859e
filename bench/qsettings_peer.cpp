// The peer of the settings' benchmark: QSettings over an INI file, with the file written after each
// change and read again before each value. Prints the time of a load and of a save in nanoseconds.

#include "bench.h"
#include "settings_writers.h"

#include <QSettings>
#include <QString>

#include <cstdio>
#include <cstdlib>
#include <string>

int main() {
    const orvane::bench::OwnRegistry folder;
    const QString file =
        QString::fromLocal8Bit(std::getenv("ORVANE_REGISTRY_USER")) + QStringLiteral("/peer.ini");
    QSettings settings(file, QSettings::IniFormat);
    const QString key = QStringLiteral("Orvane bench/Version 1.0/Window/Caption");
    const QString value = QStringLiteral("a value of thirty-two characters");
    bool odd = false;
    // A value that is the same already would not be written.
    const auto save = [&] {
        odd = !odd;
        settings.setValue(key, odd ? value : value + QLatin1Char('!'));
        settings.sync();
    };
    std::size_t read = 0;
    const auto load = [&] {
        settings.sync();
        read += static_cast<std::size_t>(settings.value(key).toString().size());
    };
    save();
    const double loading = orvane::bench::medianTime(load, 20, 50);
    const double saving = orvane::bench::medianTime(save, 20, 20);
    if (read == 0 || settings.status() != QSettings::NoError) return 1;
    std::printf("%.0f %.0f\n", loading, saving);
    return 0;
}
