// One start of a program that runs once per session: single_instance IDENTIFIER FILE...
// It says what it does, until the action "quit".

#include <csignal>
#include <iostream>
#include <unistd.h>

#include "platform/dbus_application.h"
#include "platform/glib_dispatcher.h"
#include "platform/syslog_system_log.h"

int main(int argc, char** argv) {
    using reelvane::ApplicationInstance;
    ::alarm(30);  // a test that fails ends all the same
    const std::vector<std::filesystem::path> files{argv + 2, argv + argc};
    // Each line at once and in one write, as others write to the same pipe.
    const auto say = [](const std::string& line) { std::cout << line + "\n" << std::flush; };
    const auto open = [&](const ApplicationInstance::OpenRequest& request) {
        for (const auto& file : request.files) say("opens " + file.native());
    };
    reelvane::SyslogSystemLog log("single_instance");
    reelvane::GlibDispatcher dispatcher;
    reelvane::DBusApplication application(log, argv[1]);
    const bool runs = application.claim(files) == ApplicationInstance::Role::Primary;
    say(runs ? "runs" : "handed over");
    if (!runs) return 0;
    open({.files = files});
    application.setOpen(open);
    application.setAction([&](const std::string& name) {
        say(name);
        dispatcher.quit();
    });
    return dispatcher.run();
}
