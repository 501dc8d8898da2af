/* A program of Microsoft's binary interface, without a C library: signs in, lists, fetches a file and
 * compares what it was told on the way. MsvcProgram.exe URL FOLDER: 0 after a success, otherwise the
 * number of the step that failed. */
#include <brevint/c.h>

__declspec(dllimport) void __stdcall ExitProcess(unsigned);
/* Of Windows' own msvcrt.dll, which needs no start-up code. */
__declspec(dllimport) int __getmainargs(int*, char***, char***, int, int*);
__declspec(dllimport) int strcmp(const char*, const char*);
__declspec(dllimport) int sprintf(char*, const char*, ...);
/* Code that uses floating point asks for it. */
int _fltused = 0;

typedef struct heard {
    uint64_t last;
    int calls;
    int went_back;
} heard;

static void on_progress(void* user, brevint_transfer* transfer, const brevint_progress* now) {
    heard* const so_far = user;
    (void)transfer;
    so_far->went_back |= now->bytes_done < so_far->last;
    so_far->last = now->bytes_done;
    ++so_far->calls;
}

static unsigned run(const char* url, const char* folder) {
    static const char projects[] = "00000000-0000-0000-0000-000000000001";
    brevint_error* error = 0;
    brevint_client* client = brevint_client_new(url, 0, &error);
    if (!client || error) return 1;
    if (brevint_sign_in(client, "ada", "wrong", 0, &error) ||
        error->failure != BREVINT_FAILURE_SIGN_IN_REFUSED)
        return 2;
    brevint_error_free(error);
    if (!brevint_sign_in(client, "ada", "ada-secret", 0, &error)) return 3;

    brevint_items* items = 0;
    if (!brevint_list(client, projects, 0, &items, 0)) return 4;
    brevint_item item;
    brevint_item_init(&item, sizeof item);
    size_t index = 0;
    while (brevint_items_get(items, index, &item) && strcmp(item.name, "Big.bin") != 0) ++index;
    if (index == brevint_items_count(items) || item.bytes != 3000001 || item.modified_time <= 0)
        return 5;

    brevint_queue* queue = brevint_queue_new(client, 0);
    char destination[1024];
    sprintf(destination, "%s/Big.bin", folder);
    heard told = {0, 0, 0};
    brevint_download request;
    brevint_download_init(&request, sizeof request);
    request.item_id = item.id;
    request.destination = destination;
    request.listed_size = item.bytes;
    request.listener = on_progress;
    request.user = &told;
    brevint_transfer* transfer = brevint_queue_download(queue, &request);
    brevint_outcome outcome;
    brevint_outcome_init(&outcome, sizeof outcome);
    brevint_transfer_wait(transfer, 60000);
    if (!brevint_transfer_outcome(transfer, &outcome) ||
        outcome.state != BREVINT_TRANSFER_FINISHED || !outcome.verified)
        return 6;
    brevint_transfer_free(transfer);
    if (told.calls < 2 || told.went_back || told.last != item.bytes) return 7;
    brevint_queue_free(queue);
    brevint_items_free(items);
    if (!brevint_sign_out(client, 0, 0)) return 8;
    brevint_client_free(client);
    return 0;
}

void Main(void) {
    int count = 0;
    char** values = 0;
    char** environment = 0;
    int start = 0;
    __getmainargs(&count, &values, &environment, 0, &start);
    ExitProcess(count == 3 ? run(values[1], values[2]) : 99);
}
