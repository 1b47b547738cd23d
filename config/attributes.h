#pragma once

#include <sys/stat.h>

/// Owner, group, permissions, access control list and extended attributes of a fresh file.

/// Gives the fresh file `fd` everything that the file `old`, whose state is `info`, has: what it is
/// made of must not be readable by anybody who could not read the old one. An access control list
/// that the fresh file inherited from its folder is taken off. Returns 0, or the errno of what
/// could not be kept.
int take_over_attributes(int fd, int old, const struct stat& info);

/// Gives a file that did not exist before owner, group, permissions and access control list of the
/// file `model`, as far as they may be given. A group that is not the model's gets the permissions
/// of all others. Without a model (-1) the umask decides. Returns 0 or errno.
int take_model_attributes(int fd, int model);
