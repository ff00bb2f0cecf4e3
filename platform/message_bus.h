#pragma once

#include "platform/gio_handles.h"

namespace reelvane {

enum class Bus { Session, System };

// No bus is ever started for these.

/// Opens a connection of the caller's own, and waits for it.
[[nodiscard]] GObjectHandle<GDBusConnection> openBus(Bus bus, GCancellable* cancellable,
                                                     GError** error);

/// The session bus that GIO itself uses, and the whole process with it: as it comes, its loss would
/// end the program, which whoever holds this handle is safe from. Null: there is none.
[[nodiscard]] GObjectHandle<GDBusConnection> harmlessSharedBus(GCancellable* cancellable);

}  // namespace reelvane
