#ifndef BREVINT_C_H
#define BREVINT_C_H

/**
 * @file
 * The library in plain C: for programs in any language, built with any compiler.
 *
 * - **Texts** are UTF-8 and end in a zero. Those that a function takes are copied before it
 *   returns. Those that it gives belong to the object that they came with and live as long.
 * - **Objects** are handles. Whoever gets one frees it, once, with the function of its name that
 *   ends in "_free"; null is passed over. A client may be freed while its queues live.
 * - **Structures** that a program fills, or has filled, begin with their size, which their init
 *   function is told: sizeof. By it the functions know which members the program has.
 * - **Results**: a function with an `error` returns 1 after a success. Otherwise it returns 0, or
 *   null, and stores an error for the caller to free, unless `error` is null. Null is stored after
 *   a success, and where there is no memory for an error.
 * - **Threads**: every function may be called on any thread, at the same time as any other, unless
 *   the handle is being freed. A listener is called on a thread of the library, or within the call
 *   that causes the change. It may call every function here; no lock is held then.
 * - **Exceptions**: none leaves a function. What a listener throws goes no further than its call.
 * - **Later versions** may add functions, members at the end of structures, and values at the end
 *   of enumerations. Nothing that is here changes its meaning.
 *
 * One process has one cookie jar, and with it one session for each host.
 */

#include "brevint/Export.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A service. */
typedef struct brevint_client brevint_client;
/** Stops calls. */
typedef struct brevint_cancellation brevint_cancellation;
/** Items of the repository. */
typedef struct brevint_items brevint_items;
/** Templates that the service offers. */
typedef struct brevint_templates brevint_templates;
/** Transfers that wait for their turn with a service. */
typedef struct brevint_queue brevint_queue;
/** One file on its way. */
typedef struct brevint_transfer brevint_transfer;
/** A folder with all that it holds, on its way. */
typedef struct brevint_group brevint_group;

/** A size or a duration that nobody knows. */
#define BREVINT_UNKNOWN_SIZE UINT64_MAX
/** The identifier of the reference service's folder "/Projects". */
#define BREVINT_PROJECTS "00000000-0000-0000-0000-000000000001"
/** The identifier of its folder "/Templates". */
#define BREVINT_TEMPLATES "00000000-0000-0000-0000-000000000002"
/** A time that nobody knows. */
#define BREVINT_UNKNOWN_TIME INT64_MIN

/** The version of the library, "1.2.3": a static text. */
BREVINT_API const char* brevint_version(void);

/** @name Errors
 * @{ */

/** What kind of failure it was. */
typedef enum brevint_failure {
    BREVINT_FAILURE_NONE = 0,
    BREVINT_FAILURE_INVALID = 1,          /**< What was given cannot be used. Nothing was sent. */
    BREVINT_FAILURE_CANCELLED = 2,        /**< By a cancellation. */
    BREVINT_FAILURE_TIMED_OUT = 3,        /**< The service did not go on in time. */
    BREVINT_FAILURE_NO_CONNECTION = 4,    /**< `connection` says why. */
    BREVINT_FAILURE_UNAVAILABLE = 5,      /**< The service asks to come back later. */
    BREVINT_FAILURE_NOT_SIGNED_IN = 6,    /**< There is no session, or it has ended. */
    BREVINT_FAILURE_NOT_ALLOWED = 7,      /**< The user may not do this. */
    BREVINT_FAILURE_NOT_FOUND = 8,        /**< There is no such item. */
    BREVINT_FAILURE_EXISTS = 9,           /**< The name is taken. */
    BREVINT_FAILURE_REFUSED = 10,         /**< For another reason: see code and server_message. */
    BREVINT_FAILURE_NOT_THE_SERVICE = 11, /**< The reply is none of such a service's. */
    BREVINT_FAILURE_SIGN_IN_REFUSED = 12, /**< server_message has the portal's words. */
    BREVINT_FAILURE_SIGNED_IN_AS_OTHER = 13, /**< Sign out first. */
    BREVINT_FAILURE_LOCAL_FILE = 14,
    BREVINT_FAILURE_OUT_OF_MEMORY = 15 /**< Or out of threads. */
} brevint_failure;

/** Why there was no reply, or not the whole of it. */
typedef enum brevint_connection {
    BREVINT_CONNECTION_FINE = 0,
    BREVINT_CONNECTION_NAME_NOT_RESOLVED = 1,
    BREVINT_CONNECTION_REFUSED = 2,
    BREVINT_CONNECTION_TIMED_OUT = 3,
    BREVINT_CONNECTION_NOT_TRUSTED = 4, /**< The certificate, or no common ground for TLS. */
    BREVINT_CONNECTION_BROKEN_OFF = 5,
    BREVINT_CONNECTION_CANCELLED = 6,
    BREVINT_CONNECTION_SOURCE_FAILED = 7, /**< The local file changed, or cannot be sent. */
    BREVINT_CONNECTION_OTHER = 8          /**< Out of memory or threads; an address that is none. */
} brevint_connection;

/** What went wrong. */
typedef struct brevint_error {
    size_t size;
    int32_t failure;            /**< A brevint_failure. */
    int32_t code;               /**< Of docs/error-codes.md; 0: none. */
    int32_t connection;         /**< A brevint_connection. */
    uint32_t http_status;       /**< Of the last reply; 0: there was none. */
    const char* text;           /**< What went wrong, for a user. Never empty. */
    const char* hint;           /**< What the user can do; may be empty. */
    const char* server_message; /**< The words of the service or the portal; may be empty. */
    int32_t may_have_happened;  /**< Not 0: the service may have carried out what was asked for. */
} brevint_error;

BREVINT_API void brevint_error_free(brevint_error* error);
/** What a code of docs/error-codes.md means: a static text; null for a code that is none. */
BREVINT_API const char* brevint_code_meaning(int32_t code);
/** The name of its constant in brevint/ErrorCodes.h, likewise. */
BREVINT_API const char* brevint_code_name(int32_t code);
/** What a user can do about it; may be empty. */
BREVINT_API const char* brevint_code_hint(int32_t code);
/** Frees a text that a function has stored for its caller. */
BREVINT_API void brevint_text_free(char* text);

/** @}
 * @name Calls
 * Each returns when the service has answered, the cancellation is used, or the time is up; silence
 * of the server delays none of that. A call that was stopped may still be carried out by the
 * service. On Windows its thread may remain inside the system until the time limit.
 *
 * Identifiers consist of letters, digits, "-", "_", "{" and "}". Another one is refused before
 * anything is sent, likewise a name that is empty, ".", "..", or has a "/" or a control character.
 * None but the sign-in follows a redirect.
 * @{ */

/** A cancellation that has not been used. Null: no memory. */
BREVINT_API brevint_cancellation* brevint_cancellation_new(void);
/** Stops the calls that have it, those that come later too. Returns at once. */
BREVINT_API void brevint_cancellation_cancel(brevint_cancellation* cancellation);
/** Calls under way go on. */
BREVINT_API void brevint_cancellation_free(brevint_cancellation* cancellation);

/** How long a call may take. Null where a call takes it stands for the defaults. */
typedef struct brevint_call {
    size_t size;                        /**< Set by brevint_call_init. */
    brevint_cancellation* cancellation; /**< Null: it cannot be cancelled. */
    uint32_t milliseconds;              /**< The time limit of the whole call: 60 s; 0 too. */
} brevint_call;

BREVINT_API void brevint_call_init(brevint_call* call, size_t size);

/** How a client behaves. */
typedef struct brevint_client_settings {
    size_t size;           /**< Set by brevint_client_settings_init. */
    int32_t insecure_http; /**< Not 0: http is accepted to other machines, where everybody on the
                              way reads passwords and content. */
} brevint_client_settings;

BREVINT_API void brevint_client_settings_init(brevint_client_settings* settings, size_t size);
/** A client for the service at an address, "https://host/app". Nothing is sent. Null settings stand
 * for the defaults. */
BREVINT_API brevint_client* brevint_client_new(const char* service_url,
                                               const brevint_client_settings* settings,
                                               brevint_error** error);
BREVINT_API void brevint_client_free(brevint_client* client);

/** Signs in. If the same user is signed in already, that is a success. Given up or failed, it
 * leaves no session. One sign-in at a time is under way in a process. */
BREVINT_API int32_t brevint_sign_in(brevint_client* client, const char* user, const char* password,
                                    const brevint_call* call, brevint_error** error);
/** Ends the session, and removes it from the jar in any case. */
BREVINT_API int32_t brevint_sign_out(brevint_client* client, const brevint_call* call,
                                     brevint_error** error);
/** Stores the session as a text for brevint_session_restore, which is a credential. Without a
 * session the failure is "not signed in". Nothing is sent. */
BREVINT_API int32_t brevint_session_save(const brevint_client* client, char** session,
                                         brevint_error** error);
/** Takes over a session. Nothing is sent: ask for the identity to see whether it is valid. */
BREVINT_API int32_t brevint_session_restore(brevint_client* client, const char* session,
                                            brevint_error** error);

/** A user's role. */
typedef enum brevint_role {
    BREVINT_ROLE_UNKNOWN = 0,
    BREVINT_ROLE_ADMINISTRATOR = 1,
    BREVINT_ROLE_USER = 2
} brevint_role;

/** Who is signed in. */
typedef struct brevint_identity {
    size_t size;
    const char* name;
    const char* portal_url; /**< Of the portal that vouches for the user. */
    int32_t role;           /**< A brevint_role. */
} brevint_identity;

/** Asks who is signed in. */
BREVINT_API int32_t brevint_ask_identity(const brevint_client* client, const brevint_call* call,
                                         brevint_identity** identity, brevint_error** error);
BREVINT_API void brevint_identity_free(brevint_identity* identity);

/** The versions of a service. */
typedef struct brevint_versions {
    size_t size;
    const char* service;
    const char* const* applications; /**< The versions of the desktop application it works with. */
    size_t application_count;
} brevint_versions;

BREVINT_API int32_t brevint_ask_versions(const brevint_client* client, const brevint_call* call,
                                         brevint_versions** versions, brevint_error** error);
BREVINT_API void brevint_versions_free(brevint_versions* versions);

/** One template. */
typedef struct brevint_template {
    size_t size; /**< Set by brevint_template_init. */
    const char* id;
    const char* key; /**< Of its type. */
    const char* name;
    const char* description;
    const char* category;
    const char* created_by;
    const char* created;  /**< As the service wrote it. */
    int64_t created_time; /**< Seconds since 1970, UTC; BREVINT_UNKNOWN_TIME. */
} brevint_template;

BREVINT_API void brevint_template_init(brevint_template* record, size_t size);
/** Asks for the templates of a type; null or an empty key: for all. */
BREVINT_API int32_t brevint_ask_templates(const brevint_client* client, const char* type_key,
                                          const brevint_call* call, brevint_templates** templates,
                                          brevint_error** error);
BREVINT_API size_t brevint_templates_count(const brevint_templates* templates);
/** Fills a record, whose texts live as long as `templates`. 0: there is no such index. */
BREVINT_API int32_t brevint_templates_get(const brevint_templates* templates, size_t index,
                                          brevint_template* record);
BREVINT_API void brevint_templates_free(brevint_templates* templates);

/** What an item is. */
typedef enum brevint_item_kind {
    BREVINT_ITEM_OTHER = 0,
    BREVINT_ITEM_FOLDER = 1,
    BREVINT_ITEM_FILE = 2
} brevint_item_kind;

/** One item of the repository. Texts are empty where the service tells nothing. */
typedef struct brevint_item {
    size_t size; /**< Set by brevint_item_init. */
    const char* id;
    const char* parent_id;
    const char* owner_id;
    const char* name;
    const char* description;
    const char* type;      /**< As the service calls it, for people. */
    int32_t kind;          /**< A brevint_item_kind. */
    uint64_t bytes;        /**< BREVINT_UNKNOWN_SIZE. */
    const char* created;   /**< As the service wrote it. */
    const char* modified;  /**< As the service wrote it. */
    int64_t created_time;  /**< Seconds since 1970, UTC; BREVINT_UNKNOWN_TIME. */
    int64_t modified_time; /**< Seconds since 1970, UTC; BREVINT_UNKNOWN_TIME. */
    int32_t is_locked;     /**< Not 0: checked out, or the service does not say. */
    const char* locked_by;
    int32_t is_public; /**< Not 0: so it is, or the service does not say. */
} brevint_item;

BREVINT_API void brevint_item_init(brevint_item* item, size_t size);
BREVINT_API size_t brevint_items_count(const brevint_items* items);
/** Fills a record, whose texts live as long as `items`. 0: there is no such index. */
BREVINT_API int32_t brevint_items_get(const brevint_items* items, size_t index, brevint_item* item);
BREVINT_API void brevint_items_free(brevint_items* items);

/** Lists a folder, in the service's order. */
BREVINT_API int32_t brevint_list(const brevint_client* client, const char* folder_id,
                                 const brevint_call* call, brevint_items** items,
                                 brevint_error** error);
/** Finds the one item with that path below a folder, "2026/Plan.xlsx", by listing folder after
 * folder. */
BREVINT_API int32_t brevint_find(const brevint_client* client, const char* folder_id,
                                 const char* path, const brevint_call* call, brevint_items** item,
                                 brevint_error** error);
/** Asks for an item's path, "/Projects/2026/Plan.xlsx". */
BREVINT_API int32_t brevint_ask_path(const brevint_client* client, const char* item_id,
                                     const brevint_call* call, char** path, brevint_error** error);
/** Makes a folder in a folder, and stores its identifier. */
BREVINT_API int32_t brevint_create_folder(const brevint_client* client, const char* parent_id,
                                          const char* name, const brevint_call* call,
                                          char** folder_id, brevint_error** error);
/** Deletes an item, a folder with all that it holds. */
BREVINT_API int32_t brevint_delete(const brevint_client* client, const char* item_id,
                                   const brevint_call* call, brevint_error** error);
/** Reads a small file, without a place for it on the disk. One of more bytes than `most` is
 * refused. Stores its bytes, which are followed by a zero, for brevint_text_free. */
BREVINT_API int32_t brevint_read(const brevint_client* client, const char* item_id, size_t most,
                                 const brevint_call* call, char** bytes, size_t* count,
                                 brevint_error** error);

/** A job by which the service processes a file that was sent. */
typedef struct brevint_job {
    size_t size;
    int32_t is_finished;
    const char* item_id; /**< Of the item that it has made or changed, once it is finished. */
} brevint_job;

/** Asks how a job stands. One that has failed is a failure with the service's reason.
 * `of_replacement` is not 0 for a job that gives a file new content. */
BREVINT_API int32_t brevint_ask_job(const brevint_client* client, const char* job_id,
                                    int32_t of_replacement, const brevint_call* call,
                                    brevint_job** job, brevint_error** error);
BREVINT_API void brevint_job_free(brevint_job* job);
/** Locks a file for the user. */
BREVINT_API int32_t brevint_check_out(const brevint_client* client, const char* item_id,
                                      const brevint_call* call, brevint_error** error);
/** Releases a file that the user has checked out. */
BREVINT_API int32_t brevint_check_in(const brevint_client* client, const char* item_id,
                                     const brevint_call* call, brevint_error** error);

/** @}
 * @name Transfers
 * @{ */

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
    uint64_t bytes_resumed;    /**< Of bytes_done: an earlier transfer has left them. */
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
    int32_t failure;            /**< A brevint_failure. */
    const char* hint;           /**< What the user can do; may be empty. */
    int32_t may_have_happened;  /**< All of it was sent; whether the service has it is unknown. */
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
BREVINT_API void brevint_queue_settings_init(brevint_queue_settings* settings, size_t size);
BREVINT_API void brevint_progress_init(brevint_progress* progress, size_t size);
BREVINT_API void brevint_outcome_init(brevint_outcome* outcome, size_t size);
BREVINT_API void brevint_download_init(brevint_download* download, size_t size);
BREVINT_API void brevint_upload_init(brevint_upload* upload, size_t size);
/**@}*/

/** A queue of its own for a client's service. Null settings stand for the defaults. Null when there
 * is no memory for it. */
BREVINT_API brevint_queue* brevint_queue_new(const brevint_client* client,
                                             const brevint_queue_settings* settings);
/** Cancels what has not ended. The handles of its transfers and groups stay valid until they are
 * freed. */
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

/** @}
 * @name Whole folders
 * @{ */

/** What is done with a file that is at the destination already. */
typedef enum brevint_existing {
    BREVINT_EXISTING_REFUSE = 0,  /**< It stays, and the entry fails with "exists". */
    BREVINT_EXISTING_REPLACE = 1, /**< It is replaced. */
    BREVINT_EXISTING_UPDATE = 2   /**< It is replaced if its size differs or if it is older, or if
                                       the service does not tell. */
} brevint_existing;

/** What becomes of an entry. */
typedef enum brevint_action {
    BREVINT_ACTION_TRANSFER = 0,
    BREVINT_ACTION_MAKE_FOLDER = 1,
    BREVINT_ACTION_SKIP = 2,  /**< It is there already and needs no update. */
    BREVINT_ACTION_REFUSE = 3 /**< It cannot be moved; its outcome says why. What a refused folder
                                   holds is not looked at. */
} brevint_action;

/** A snapshot of a group. */
typedef struct brevint_group_progress {
    size_t size;               /**< Set by brevint_group_progress_init. */
    int32_t state;             /**< A brevint_transfer_state. Waiting: it is being planned. */
    size_t entry_count;        /**< Folders and files known so far. */
    size_t files_total;        /**< Files to be moved, without those refused or skipped. */
    size_t files_done;         /**< Of them, those that have arrived. */
    size_t files_failed;       /**< Files and folders that failed, refused ones included. */
    uint64_t bytes_done;       /**< Never goes back. */
    uint64_t bytes_total;      /**< Of all files to be moved, as far as their sizes are known. */
    uint64_t bytes_per_second; /**< Lately. */
    uint64_t seconds_left;     /**< BREVINT_UNKNOWN_SIZE. */
} brevint_group_progress;

/** One folder or file of a group. */
typedef struct brevint_group_entry {
    size_t size;      /**< Set by brevint_group_entry_init. */
    const char* path; /**< Below the folder, with "/" between names. */
    int32_t action;   /**< A brevint_action. */
    int32_t state;    /**< A brevint_transfer_state. */
    uint64_t bytes_done;
    uint64_t bytes_total; /**< BREVINT_UNKNOWN_SIZE. */
} brevint_group_entry;

/** Told of every change of the group's state, of every entry that has ended, and of progress at
 * most ten times a second. Otherwise as brevint_listener. */
typedef void (*brevint_group_listener)(void* user, brevint_group* group,
                                       const brevint_group_progress* progress);

/** What a folder holds is moved into another folder. */
typedef struct brevint_folder_transfer {
    size_t size;            /**< Set by brevint_folder_transfer_init. */
    const char* folder_id;  /**< The folder at the service. May be null where an upload is only
                                 planned: then it is one that is not there yet. */
    const char* local_path; /**< The local folder. A download makes it. */
    int32_t existing;       /**< A brevint_existing. */
    int32_t plan_only;  /**< Not 0: nothing is moved or made; the entries tell what would be. Those
                             to be moved stay in the state "waiting". */
    int32_t keep_times; /**< Not 0: downloaded files get the times of their items. */
    int32_t durable;    /**< As in brevint_download. */
    int32_t keeps_part; /**< As in brevint_download. */
    brevint_group_listener listener; /**< May be null. */
    void* user;                      /**< Handed to the listener. */
} brevint_folder_transfer;

BREVINT_API void brevint_folder_transfer_init(brevint_folder_transfer* transfer, size_t size);
BREVINT_API void brevint_group_progress_init(brevint_group_progress* progress, size_t size);
BREVINT_API void brevint_group_entry_init(brevint_group_entry* entry, size_t size);

/**
 * Begins to move what a folder of the service holds into a local folder. First all of it is
 * planned: names that cannot be local ones, names that a disk may take for one, and what stands in
 * the way are refused, which keeps no other file from moving. Null: no memory.
 */
BREVINT_API brevint_group* brevint_queue_download_folder(brevint_queue* queue,
                                                         const brevint_folder_transfer* transfer);
/** The same the other way. Links, special files, empty files and programs are refused. */
BREVINT_API brevint_group* brevint_queue_upload_folder(brevint_queue* queue,
                                                       const brevint_folder_transfer* transfer);
BREVINT_API void brevint_group_progress_get(const brevint_group* group,
                                            brevint_group_progress* progress);
/** As brevint_transfer_wait. */
BREVINT_API int32_t brevint_group_wait(const brevint_group* group, uint32_t milliseconds);
/** The outcome of the whole: it has finished if every entry has, or has been skipped. If some have
 * failed, the text counts them, and all else is that of the first. 0 while the state is not final.
 */
BREVINT_API int32_t brevint_group_outcome(const brevint_group* group, brevint_outcome* outcome);
/** Fills a record, whose texts live as long as the group. 0: there is no such index. */
BREVINT_API int32_t brevint_group_entry_get(const brevint_group* group, size_t index,
                                            brevint_group_entry* entry);
/** The outcome of an entry. 0 while its state is not final. */
BREVINT_API int32_t brevint_group_entry_outcome(const brevint_group* group, size_t index,
                                                brevint_outcome* outcome);
/** Ends all that has not ended, as brevint_transfer_cancel. What has arrived stays, and so do the
 * folders that were made. */
BREVINT_API void brevint_group_cancel(brevint_group* group);
/** Cancels it, and frees the handle, as brevint_transfer_free. */
BREVINT_API void brevint_group_free(brevint_group* group);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
