#include "foundation/HomeFolder.h"

#include <QByteArray>

#include <pwd.h>
#include <unistd.h>

namespace tarnwell::foundation {

bool provideHome()
{
    if (!qEnvironmentVariableIsEmpty("HOME"))
        return true;
    const passwd *account = ::getpwuid(::getuid());
    return account && *account->pw_dir == '/' && qputenv("HOME", account->pw_dir);
}

} // namespace tarnwell::foundation
