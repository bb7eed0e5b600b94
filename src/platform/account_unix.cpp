#include "platform/environment.h"

#include <pwd.h>
#include <unistd.h>

namespace ktr {

QString fullUserName()
{
    const struct passwd *user = ::getpwuid(::geteuid());
    // Behind the first comma stand rooms and telephones; "&" stands for the login.
    const QString name =
        user != nullptr ? QString::fromLocal8Bit(user->pw_gecos).section(u',', 0, 0) : QString();
    return name.contains(u'&') ? QString() : name.trimmed();
}

} // namespace ktr
