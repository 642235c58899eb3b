#ifndef QV_IO_QV_PATH_DIRECTORY_HH
#define QV_IO_QV_PATH_DIRECTORY_HH

// The component of the listing flags' names.

#include <qv/io/qv_path_directory.h>

extern QV_FLAGSET *qv___PathDirectoryListFlagsFlagset;

void qv___PathDirectoryListFlagsStartup();
void qv___PathDirectoryListFlagsShutdown();

#endif
