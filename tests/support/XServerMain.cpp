#include "DisplayServer.h"

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    return tarnwell::tests::runTestsOn(
        {.programs = {u"Xvfb"_s, u"setxkbmap"_s},
         .command = {u"Xvfb"_s, u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x1024x24"_s,
                     u"-noreset"_s, u"-nolisten"_s, u"tcp"_s},
         .platform = "xcb",
         .variables = {"DISPLAY"},
         .prefix = ":"},
        argc, argv);
}
