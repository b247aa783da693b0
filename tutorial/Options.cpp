#include "tutorial/Options.h"

#include <QHash>

namespace tarnwell::tutorial {

using namespace Qt::StringLiterals;

Options parseOptions(const QStringList &arguments, const QProcessEnvironment &environment)
{
    Options options;
    options.home = environment.value(u"TARNWELL_HOME"_s);
    options.root = environment.value(u"TARNWELL_ROOT"_s);
    QString colorScheme;
    const QHash<QString, QString *> withValue{{u"--home"_s, &options.home},
                                              {u"--root"_s, &options.root},
                                              {u"--color-scheme"_s, &colorScheme}};
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        const QString name = argument.section(u'=', 0, 0);
        if (argument == "--verbose"_L1) {
            options.verbose = true;
        } else if (argument == "--help"_L1 || argument == "-h"_L1) {
            options.help = true;
        } else if (QString *value = withValue.value(name)) {
            if (name.size() < argument.size())
                *value = argument.mid(name.size() + 1);
            else
                *value = i + 1 < arguments.size() ? arguments.at(++i) : QString();
            if (value->isEmpty())
                options.error = u"%1 needs a value."_s.arg(name);
            else if (value->startsWith("--"_L1))
                options.error = u"%1 needs a value, and %2 is none."_s.arg(name, *value);
        } else if (argument.startsWith(u'-')) {
            options.error = u"%1 is not an option of this program."_s.arg(argument);
        }
    }
    if (colorScheme == "light"_L1)
        options.colorScheme = host::ColorScheme::Light;
    else if (colorScheme == "dark"_L1)
        options.colorScheme = host::ColorScheme::Dark;
    else if (!colorScheme.isEmpty())
        options.error = u"--color-scheme is light or dark."_s;
    return options;
}

QString helpText()
{
    return uR"(Usage: tarnwell-tutorial [options]
Shows how to give menu items shortcuts of your own.

  --home DIR      the folder that stands for the home folder
  --root DIR      a folder put before /Library, /Applications and their like
  --color-scheme light|dark
                  do not follow the desktop's colour scheme
  --verbose       print what happens, an event on a line
  -h, --help      print this
)"_s;
}

} // namespace tarnwell::tutorial
