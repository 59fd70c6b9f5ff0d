/// Writes autostart files, good and bad, into the folder that is the argument.
#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <vector>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::vector<QByteArray> files{
        "[Desktop Entry]\nType=Application\nName=LumenFold\nExec=\"/usr/bin/lumenfold\"\nTryExec=/usr/bin/lumenfold\n",
        "[Desktop Entry]\nType=Application\nExec=a\nHidden=true\n",
        "[Desktop Entry]\nType=Application\nExec=a\nOnlyShowIn=GNOME;KDE;\nNotShowIn=XFCE\n",
        "[Desktop Entry]\nType=Application\nExec=a\nTryExec=/a\\sb\\n\\\\\nX-GNOME-Autostart-enabled=false\n",
        "# comment\n\n[Other]\nType=Link\n[Desktop Entry]\n=\n",
        "/opt/a \"quoted\" $path/with `all` of it\\%f",
    };
    const QDir folder(QCoreApplication::arguments().value(1));
    for (std::size_t index = 0; index < files.size(); ++index) {
        QFile file(folder.filePath(QString::number(index)));
        if (!file.open(QIODevice::WriteOnly) || file.write(files[index]) != files[index].size()) {
            return 1;
        }
    }
    return 0;
}
