// String resources of the library. Read by the resource compiler too: definitions only.
#define BREVINT_STRING_CONNECTION_FAILURE_ID 2
#define BREVINT_STRING_CONNECTION_FAILURE                                                          \
    "Skelvor Tools cannot connect with the Dashboard. Please verify that your internet "           \
    "connection is working. If it is, then verify with your system administrator that Skelvor "    \
    "Tools is using the correct URL (%s)."
