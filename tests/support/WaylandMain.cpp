#include "DisplayServer.h"

#include <QFile>
#include <QTemporaryDir>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr uint nobody = 65534;

} // namespace

int main(int argc, char **argv)
{
    // Not under TMPDIR: the compositor's user may not be let in there.
    const QTemporaryDir folder(u"/tmp/tarnwell-wayland.XXXXXX"_s);
    const QString path = folder.path();
    const QString configuration = folder.filePath(u"config"_s);
    QFile file(configuration);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    file.write("xwayland disable\n"
               "output HEADLESS-1 resolution 1280x1024\n"
               "exec echo $XDG_RUNTIME_DIR/$WAYLAND_DISPLAY $SWAYSOCK\n");
    file.close();
    QStringList command{u"env"_s, u"XDG_RUNTIME_DIR="_s + path, u"WLR_BACKENDS=headless"_s,
                        u"WLR_LIBINPUT_NO_DEVICES=1"_s, u"WLR_RENDERER=pixman"_s};
    if (geteuid() == 0) {
        // The compositor refuses to run as root.
        const QByteArray name = QFile::encodeName(path);
        if (chown(name.constData(), nobody, nobody) != 0)
            return 1;
        command += {u"setpriv"_s, u"--reuid=%1"_s.arg(nobody), u"--regid=%1"_s.arg(nobody),
                    u"--clear-groups"_s};
    }
    command += {u"sway"_s, u"-c"_s, configuration};
    return tarnwell::tests::runTestsOn({.programs = {u"sway"_s},
                                        .command = command,
                                        .platform = "wayland",
                                        .variables = {"WAYLAND_DISPLAY", "SWAYSOCK"},
                                        .prefix = {}},
                                       argc, argv);
}
