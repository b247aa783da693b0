#include "host/Options.h"

#include <QHash>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

Options parseOptions(const QStringList &arguments)
{
    Options options;
    QString colorScheme;
    const QHash<QString, QString *> withValue{{u"--home"_s, &options.home},
                                              {u"--root"_s, &options.root},
                                              {u"--pane"_s, &options.pane},
                                              {u"--shots"_s, &options.shots},
                                              {u"--color-scheme"_s, &colorScheme}};
    const QHash<QString, bool *> flags{{u"--demo"_s, &options.demo},
                                       {u"--help"_s, &options.help},
                                       {u"-h"_s, &options.help},
                                       {u"--version"_s, &options.version}};

    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const auto &argument = arguments.at(i);
        const auto name = argument.section(u'=', 0, 0);
        if (bool *flag = flags.value(argument)) {
            *flag = true;
        } else if (QString *value = withValue.value(name)) {
            if (name.size() < argument.size())
                *value = argument.mid(name.size() + 1);
            else if (i + 1 < arguments.size())
                *value = arguments.at(++i);
            if (value->isEmpty())
                options.error = u"%1 needs a value."_s.arg(name);
            else if (value->startsWith("--"_L1))
                options.error = u"%1 needs a value, and %2 is none."_s.arg(name, *value);
        } else if (argument.size() > 1 && argument.front() == u'-' && argument.at(1) != u'-') {
            // Such as the one that a session manager adds when it starts the program again.
            options.toolkit.append(argument);
            if (i + 1 < arguments.size() && !arguments.at(i + 1).startsWith(u'-'))
                options.toolkit.append(arguments.at(++i));
            if (argument == "-platform"_L1 && options.toolkit.constLast() != argument)
                options.platform = options.toolkit.constLast();
        } else {
            options.error = u"%1 is not an option of this program."_s.arg(argument);
        }
    }
    if (colorScheme == "light"_L1)
        options.colorScheme = ColorScheme::Light;
    else if (colorScheme == "dark"_L1)
        options.colorScheme = ColorScheme::Dark;
    else if (!colorScheme.isEmpty())
        options.error = u"--color-scheme is light or dark."_s;
    return options;
}

QStringList commandLine(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

QString helpText()
{
    return uR"(Usage: tarnwell-settings [options]
Shows the Tarnwell settings pane.

  --home DIR      the folder that stands for the home folder
  --root DIR      a folder put before /Library, /Applications and their like
  --pane PATH     the pane bundle to show
  --shots DIR     draw every page into PNG files in this folder, print the first
                  page as text, and exit; needs no display
  --color-scheme light|dark
                  do not follow the desktop's colour scheme
  --demo          say in the title that this is a demonstration
  --version       print the version
  -h, --help      print this
)"_s;
}

} // namespace tarnwell::host
