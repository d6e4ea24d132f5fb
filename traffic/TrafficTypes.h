#pragma once

/// Registers the records of this room under their names, for queued signals; safe to call again.
void registerTrafficTypes();
