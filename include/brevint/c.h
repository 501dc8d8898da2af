#ifndef BREVINT_C_H
#define BREVINT_C_H

/**
 * @file
 * Transfers of files in plain C: for programs in any language, built with any compiler.
 *
 * - Texts are UTF-8 and end in a zero. Those that a function takes are copied before it returns.
 * Those that it gives belong to the handle and live as long as it does.
 * - Objects are handles. Whoever makes one frees it, once, with the function that says so; null is
 *   passed over.
 * - Structures begin with their size, which their init function sets. Later versions may add
 * members at the end; the functions know by the size which ones a caller has.
 * - Every function may be called on any thread. A listener is called on a thread of the library, or
 *   within the call that causes the change, and may call every function here. No lock is held then.
 * - Nothing is thrown, and no exception of a listener goes further than the call.
 */

#include "brevint/Export.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A service, and the transfers that wait for their turn with it. */
typedef struct brevint_queue brevint_queue;
/** One file on its way. */
typedef struct brevint_transfer brevint_transfer;

/** A size that nobody knows. */
#define BREVINT_UNKNOWN_SIZE UINT64_MAX

/** How a transfer stands. The last three are final. */
typedef enum brevint_transfer_state {
    BREVINT_TRANSFER_WAITING = 0,       /**< For its turn. */
    BREVINT_TRANSFER_RUNNING = 1,       /**< Bytes move, or the next attempt is waited for. */
    BREVINT_TRANSFER_PROCESSING = 2,    /**< The service has the file; its job is not done. */
    BREVINT_TRANSFER_NEEDS_SIGN_IN = 3, /**< See brevint_queue_signed_in. */
    BREVINT_TRANSFER_FINISHED = 4,
    BREVINT_TRANSFER_FAILED = 5,
    BREVINT_TRANSFER_CANCELLED = 6
} brevint_transfer_state;

/** Why there was no reply, or not the whole of it. */
typedef enum brevint_connection {
    BREVINT_CONNECTION_FINE = 0,
    BREVINT_CONNECTION_NAME_NOT_RESOLVED = 1,
    BREVINT_CONNECTION_REFUSED = 2,
    BREVINT_CONNECTION_TIMED_OUT = 3,
    BREVINT_CONNECTION_NOT_TRUSTED = 4, /**< The certificate, or no common ground for TLS. */
    BREVINT_CONNECTION_BROKEN_OFF = 5,
    BREVINT_CONNECTION_CANCELLED = 6,
    BREVINT_CONNECTION_SOURCE_FAILED = 7, /**< The local file changed while it was sent. */
    BREVINT_CONNECTION_OTHER = 8          /**< Out of memory or threads; an address that is none. */
} brevint_connection;

/** How a queue behaves. Times are in milliseconds. */
typedef struct brevint_queue_settings {
    size_t size;            /**< Set by brevint_queue_settings_init. */
    uint32_t concurrent;    /**< Transfers that run at a time: 4. */
    uint32_t attempts;      /**< Without progress in between, the first included: 5. */
    uint32_t first_pause;   /**< Before the second attempt, doubled before each further one: 1 s. */
    uint32_t longest_pause; /**< 30 s. */
    uint32_t stall_limit;   /**< Without progress, after which a connection is broken: 60 s. */
    uint32_t reply_limit;   /**< For the reply to a file that was sent: 10 min. */
} brevint_queue_settings;

/** A snapshot of a transfer under way. */
typedef struct brevint_progress {
    size_t size;               /**< Set by brevint_progress_init; in a listener by the library. */
    int32_t state;             /**< A brevint_transfer_state. */
    uint64_t bytes_done;       /**< Of the file. Never goes back. */
    uint64_t bytes_total;      /**< Of the file; BREVINT_UNKNOWN_SIZE. */
    uint64_t bytes_per_second; /**< Lately. */
    uint64_t seconds_left;     /**< BREVINT_UNKNOWN_SIZE. */
} brevint_progress;

/** What came of a transfer. */
typedef struct brevint_outcome {
    size_t size;                /**< Set by brevint_outcome_init. */
    int32_t state;              /**< The final brevint_transfer_state. */
    int32_t code;               /**< Of docs/error-codes.md; 1101 after a success. */
    uint32_t http_status;       /**< Of the last reply; 0: there was none. */
    int32_t connection;         /**< A brevint_connection. */
    const char* text;           /**< What went wrong, for a user; empty after a success. */
    const char* server_message; /**< The service's own words; often empty. */
    const char* local_path;     /**< Of the file written or sent. */
    const char* item_id;        /**< Of the item fetched, or made by the service. */
    const char* job_id;         /**< Of a file that the service accepted. */
    int32_t verified;           /**< The size was compared with what server or caller had said. */
    int32_t job_goes_on;        /**< The service goes on processing what was sent. */
    int32_t kept_beside;        /**< The content is complete, see brevint_transfer_finish. */
} brevint_outcome;

/**
 * Told of every change of state, and of progress at most ten times a second. Two threads may be in
 * it at once for one transfer: its own, and the one that cancels. It may cancel and free the
 * transfer.
 */
typedef void (*brevint_listener)(void* user, brevint_transfer* transfer,
                                 const brevint_progress* progress);

/** What is fetched, and where to. */
typedef struct brevint_download {
    size_t size;             /**< Set by brevint_download_init. */
    const char* item_id;     /**< Of the file at the service. */
    const char* destination; /**< A local path. A file there is replaced in one step at the end. */
    uint64_t listed_size;    /**< As the listing says; BREVINT_UNKNOWN_SIZE unless set. */
    int32_t durable;         /**< Not 0: flushed to the disk before it takes its place. */
    int32_t keeps_part; /**< Not 0: when cancelled, what has come stays for a later transfer. */
    brevint_listener listener; /**< May be null. */
    void* user;                /**< Handed to the listener. */
} brevint_download;

/** What is sent, and where to. */
typedef struct brevint_upload {
    size_t size;               /**< Set by brevint_upload_init. */
    const char* folder_id;     /**< A new file is made there; or null, and file_id is given. */
    const char* file_id;       /**< The file that gets this content; or null. */
    const char* local_path;    /**< Of the file to send. */
    brevint_listener listener; /**< May be null. */
    void* user;                /**< Handed to the listener. */
} brevint_upload;

/**@{ Sets the size and the defaults. */
BREVINT_API void brevint_queue_settings_init(brevint_queue_settings* settings);
BREVINT_API void brevint_progress_init(brevint_progress* progress);
BREVINT_API void brevint_outcome_init(brevint_outcome* outcome);
BREVINT_API void brevint_download_init(brevint_download* download);
BREVINT_API void brevint_upload_init(brevint_upload* upload);
/**@}*/

/** A queue for the service at an address. Null settings stand for the defaults. Null when there is
 * no memory for it. */
BREVINT_API brevint_queue* brevint_queue_new(const char* service_url,
                                             const brevint_queue_settings* settings);
/** Cancels what has not ended. The handles of its transfers stay valid until they are freed. */
BREVINT_API void brevint_queue_free(brevint_queue* queue);
/** There is a session again: transfers that need a sign-in go on, before those that have not begun.
 */
BREVINT_API void brevint_queue_signed_in(brevint_queue* queue);

/** Begins a download. Null when there is no memory for it; whatever else goes wrong is its outcome.
 */
BREVINT_API brevint_transfer* brevint_queue_download(brevint_queue* queue,
                                                     const brevint_download* download);
/** Begins an upload, likewise. It is finished once the service's job is. */
BREVINT_API brevint_transfer* brevint_queue_upload(brevint_queue* queue,
                                                   const brevint_upload* upload);

/** Tells how a transfer stands. Takes no lock. */
BREVINT_API void brevint_transfer_progress(const brevint_transfer* transfer,
                                           brevint_progress* progress);
/** Waits until the state is final and the listener has been told so, or a sign-in is needed. 0: the
 * time was up before. */
BREVINT_API int32_t brevint_transfer_wait(const brevint_transfer* transfer, uint32_t milliseconds);
/** Fills the outcome. 0 while the state is not final. */
BREVINT_API int32_t brevint_transfer_outcome(const brevint_transfer* transfer,
                                             brevint_outcome* outcome);
/**
 * Ends a transfer that has not ended, and removes what it made. Returns at once, however silent the
 * server is; only a block that is being written to a file is waited for. A job that the service has
 * begun goes on.
 *
 * On Windows its thread may remain inside a call of the system until the time limit of that call.
 */
BREVINT_API void brevint_transfer_cancel(brevint_transfer* transfer);
/** Puts content that is kept beside its destination in place. 0: it still cannot take it. */
BREVINT_API int32_t brevint_transfer_finish(brevint_transfer* transfer);
/** Cancels it, and frees the handle. Waits for the listener if it is at work on another thread. The
 * listener is not called any more after that. */
BREVINT_API void brevint_transfer_free(brevint_transfer* transfer);

#ifdef __cplusplus
}
#endif

#endif
