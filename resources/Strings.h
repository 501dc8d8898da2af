// String resources of the library, and the module that they are found in. Read by the resource
// compiler too: definitions only.
#define BREVINT_MODULE_NAME "Brevint.dll"
#define BREVINT_STRING_CONNECTION_FAILURE_ID 2
#define BREVINT_STRING_CONNECTION_FAILURE                                                          \
    "Skelvor Tools cannot connect with the Dashboard. Please verify that your internet "           \
    "connection is working. If it is, then verify with your system administrator that Skelvor "    \
    "Tools is using the correct URL (%s)."
