#pragma once

/// @file
/// The library for C++20 programs of any compiler: values, exceptions and ranges over brevint/c.h,
/// in headers alone.
///
/// - Texts are UTF-8, local names std::filesystem::path.
/// - Each call takes CallOptions as its last argument: what stops it, how long it may take, and
///   whether a failure is thrown or stored.
/// - Every function may be called on any thread, at the same time as any other, unless the object
///   is being moved or destroyed. A call blocks the thread that makes it; transfers do not.
/// - What is thrown: Exception, std::bad_alloc, what a callback of the application has thrown;
///   for misuse std::logic_error: an object that was moved from, a text with a zero in it.
///
/// One process has one cookie jar, and with it one session for each host.

#include "brevint/client/Account.h"
#include "brevint/client/Call.h"
#include "brevint/client/Error.h"
#include "brevint/client/FolderWalk.h"
#include "brevint/client/Item.h"
#include "brevint/client/StopToken.h"
#include "brevint/client/Transfer.h"
#include "brevint/client/TransferGroup.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace brevint {

/// How a client behaves.
struct ClientSettings {
    /// Http is accepted to other machines, where everybody on the way reads passwords and content.
    bool insecureHttp = false;
    TransferSettings transfers = {};
    /// Calls the callbacks of the transfers. Empty: they are called where the change happens.
    Executor executor = {};
};

/// What a job is for.
enum class JobKind { Upload, Replacement };

/// A job by which the service processes a file that was sent.
struct Job {
    bool isFinished = false;
    std::string itemId; ///< Of the item that it has made or changed, once it is finished.
};

/// A service.
///
///     brevint::Client client("https://documents.example.org/app");
///     client.SignIn("ada", password);
///     for (const brevint::Item& item : client.List(brevint::kProjects)) {
///         std::cout << item.name << '\n';
///     }
///
/// Destroying it cancels its transfers, which can still be asked for their outcome.
class Client {
public:
    /// For the service at an address, "https://host/app". Nothing is sent. With an `error`, a
    /// client for an address that cannot be used is like one that was moved from.
    explicit Client(const std::string& serviceUrl, ClientSettings settings = {},
                    Error* error = nullptr) {
        brevint_client_settings raw = detail::Initial(brevint_client_settings_init);
        raw.insecure_http = settings.insecureHttp ? 1 : 0;
        const CallOptions options{.error = error};
        detail::Call(nullptr, options).Plain([&](brevint_error** failed) {
            detail::Owned<brevint_client> handle(
                brevint_client_new(detail::Terminated(serviceUrl), &raw, failed));
            if (handle) {
                m_state = std::make_unique<State>(std::move(handle), std::move(settings));
            }
            return m_state != nullptr;
        });
    }

    /// @name The session
    /// @{

    /// Signs in, and has the transfers that need it go on. If the same user is signed in already,
    /// that is a success. A sign-in that fails leaves no session. A process has one at a time
    /// under way.
    bool SignIn(const std::string& user, const std::string& password,
                const CallOptions& options = {}) {
        const bool succeeded = NewCall(options).Do(brevint_sign_in, user, password);
        if (succeeded) {
            SignedIn();
        }
        return succeeded;
    }

    /// Ends the session, which is gone from the process in any case.
    bool SignOut(const CallOptions& options = {}) { return NewCall(options).Do(brevint_sign_out); }

    /// The session as a text for RestoreSession. It is a credential. Nothing is sent.
    [[nodiscard]] std::string SaveSession(const CallOptions& options = {}) const {
        char* session = nullptr;
        NewCall(options).Plain(
            [&](brevint_error** error) { return brevint_session_save(Handle(), &session, error); });
        return detail::Text(detail::Owned<char>(session).get());
    }

    /// Takes over a session, and has the transfers that need it go on. Nothing is sent: WhoAmI
    /// tells whether it is valid.
    bool RestoreSession(const std::string& session, const CallOptions& options = {}) {
        const bool succeeded = NewCall(options).Plain([&](brevint_error** error) {
            return brevint_session_restore(Handle(), detail::Terminated(session), error);
        });
        if (succeeded) {
            SignedIn();
        }
        return succeeded;
    }

    /// Has the transfers that need a sign-in go on, after one that was made elsewhere.
    void SignedIn() {
        State& state = TheState();
        brevint_queue* queue = nullptr; // once made it stays; callbacks may use the client
        {
            const std::lock_guard lock(state.mutex);
            queue = state.queue.get();
        }
        if (queue) {
            brevint_queue_signed_in(queue);
        }
    }

    /// Asks who is signed in.
    [[nodiscard]] Identity WhoAmI(const CallOptions& options = {}) const {
        const auto identity = NewCall(options).Ask<brevint_identity>(brevint_ask_identity);
        return identity ? detail::ToIdentity(*identity) : Identity();
    }

    /// Asks for the versions of the service. Needs no session.
    [[nodiscard]] Versions GetVersions(const CallOptions& options = {}) const {
        const auto versions = NewCall(options).Ask<brevint_versions>(brevint_ask_versions);
        return versions ? detail::ToVersions(*versions) : Versions();
    }

    /// Asks for the templates of a type; an empty key: for all.
    [[nodiscard]] std::vector<Template> GetTemplates(const std::string& typeKey = {},
                                                     const CallOptions& options = {}) const {
        const auto all = NewCall(options).Ask<brevint_templates>(brevint_ask_templates, typeKey);
        return all ? detail::ToTemplates(all.get()) : std::vector<Template>();
    }

    /// @}
    /// @name The repository
    /// @{

    /// Lists a folder, in the service's order.
    [[nodiscard]] Listing List(const ItemRef& folder, const CallOptions& options = {}) const {
        return Listing(NewCall(options).Ask<brevint_items>(brevint_list, folder));
    }

    /// Goes through all that is below a folder. Nothing is sent before the walk begins; the options
    /// are those of each call that it makes, and their `error` must outlive it.
    [[nodiscard]] FolderWalk Walk(ItemRef folder, CallOptions options = {}) const {
        return {TheState().client, std::move(folder), std::move(options)};
    }

    /// Finds the one item with that path below a folder, by listing folder after folder.
    ///
    ///     const brevint::Item plan = client.Find(brevint::kProjects, "2026/Plan.xlsx");
    [[nodiscard]] Item Find(const ItemRef& folder, const std::string& path,
                            const CallOptions& options = {}) const {
        const auto found = NewCall(options).Ask<brevint_items>(brevint_find, folder, path);
        return found ? detail::GetItem(found.get(), 0) : Item();
    }

    /// Asks for an item's path, "/Projects/2026/Plan.xlsx".
    [[nodiscard]] std::string PathOf(const ItemRef& item, const CallOptions& options = {}) const {
        return detail::Text(NewCall(options).Ask<char>(brevint_ask_path, item).get());
    }

    /// The content of a small file. One of more bytes than the maximum fails with Failure::Refused.
    ///
    ///     const std::string notes = client.Read({brevint::kProjects, "Bridge/Notes.txt"}, 65536);
    [[nodiscard]] std::string Read(const ItemRef& file, std::size_t maximum,
                                   const CallOptions& options = {}) const {
        detail::Call call = NewCall(options);
        const std::optional<ItemRef> found = call.Resolve(file);
        char* bytes = nullptr;
        std::size_t count = 0;
        const brevint_call how = call.How();
        if (!found || !call.Plain([&](brevint_error** error) {
                return brevint_read(Handle(), detail::Terminated(found->Id()), maximum, &how,
                                    &bytes, &count, error);
            })) {
            return {};
        }
        const detail::Owned<char> owned(bytes);
        return {bytes, count};
    }

    /// Makes a folder in a folder. Returns its identifier.
    std::string CreateFolder(const ItemRef& parent, const std::string& name,
                             const CallOptions& options = {}) {
        return detail::Text(NewCall(options).Ask<char>(brevint_create_folder, parent, name).get());
    }

    /// Deletes an item, a folder with all that it holds.
    bool Delete(const ItemRef& item, const CallOptions& options = {}) {
        return NewCall(options).Do(brevint_delete, item);
    }

    /// Asks how a job stands by which the service processes a file: Outcome::jobId. One that has
    /// failed is a failure with the service's reason.
    [[nodiscard]] Job AskJob(const std::string& jobId, JobKind kind,
                             const CallOptions& options = {}) const {
        const auto ask = [kind](brevint_client* client, const char* id, const brevint_call* call,
                                brevint_job** job, brevint_error** error) {
            return brevint_ask_job(client, id, kind == JobKind::Replacement ? 1 : 0, call, job,
                                   error);
        };
        const auto job = NewCall(options).Ask<brevint_job>(ask, jobId);
        return job ? Job{job->is_finished != 0, detail::Text(job->item_id)} : Job();
    }

    /// Locks a file for the user.
    bool CheckOut(const ItemRef& file, const CallOptions& options = {}) {
        return NewCall(options).Do(brevint_check_out, file);
    }

    /// Releases a file that the user has checked out.
    bool CheckIn(const ItemRef& file, const CallOptions& options = {}) {
        return NewCall(options).Do(brevint_check_in, file);
    }

    /// @}
    /// @name Transfers
    /// They begin at once, or when others have made room. The options of the call are those of the
    /// lookup where an item is meant by its path; whatever else goes wrong is the outcome.
    /// @{

    /// Begins a download. A file at the destination is replaced in one step at the end.
    ///
    ///     brevint::Transfer transfer = client.Download(
    ///         item, "Plan.xlsx", {.onChange = [](const brevint::Progress& now) {
    ///             std::cout << now.bytesDone << " bytes\n";
    ///         }});
    [[nodiscard]] Transfer Download(const ItemRef& file, const std::filesystem::path& destination,
                                    DownloadOptions how = {}, const CallOptions& options = {}) {
        const std::string path = detail::Utf8(destination);
        brevint_download request = detail::Initial(brevint_download_init);
        request.destination = path.c_str();
        request.durable = how.durable ? 1 : 0;
        request.keeps_part = how.keepsPart ? 1 : 0;
        return Begin<Transfer>(file, options, std::move(how.onChange), request,
                               [&](const ItemRef& found, brevint_queue* queue) {
                                   const auto size = how.listedSize ? how.listedSize : found.Size();
                                   request.item_id = detail::Terminated(found.Id());
                                   request.listed_size = size.value_or(BREVINT_UNKNOWN_SIZE);
                                   return brevint_queue_download(queue, &request);
                               });
    }

    /// Begins to send a file, which becomes a new one in a folder. It has finished once the
    /// service's job has.
    [[nodiscard]] Transfer Upload(const std::filesystem::path& file, const ItemRef& folder,
                                  UploadOptions how = {}, const CallOptions& options = {}) {
        return Send(file, folder, &brevint_upload::folder_id, std::move(how), options);
    }

    /// Begins to give a file of the service new content, likewise.
    [[nodiscard]] Transfer Replace(const ItemRef& file, const std::filesystem::path& content,
                                   UploadOptions how = {}, const CallOptions& options = {}) {
        return Send(content, file, &brevint_upload::file_id, std::move(how), options);
    }

    /// Begins to move what a folder of the service holds into a local folder, which is made. First
    /// all of it is planned. What cannot be moved is refused and keeps no other file from moving.
    [[nodiscard]] TransferGroup DownloadFolder(const ItemRef& folder,
                                               const std::filesystem::path& destination,
                                               FolderOptions how = {},
                                               const CallOptions& options = {}) {
        return Move(folder, destination, brevint_queue_download_folder, std::move(how), options);
    }

    /// The same the other way. Links, special files, empty files and programs are refused. A plan
    /// for a folder that is not there yet takes an empty identifier.
    [[nodiscard]] TransferGroup UploadFolder(const std::filesystem::path& source,
                                             const ItemRef& folder, FolderOptions how = {},
                                             const CallOptions& options = {}) {
        return Move(folder, source, brevint_queue_upload_folder, std::move(how), options);
    }

    /// @}

private:
    struct State {
        State(std::shared_ptr<brevint_client> handle, ClientSettings chosen)
            : client(std::move(handle)), settings(std::move(chosen)) {}

        const std::shared_ptr<brevint_client> client; ///< Shared with walks.
        const ClientSettings settings;
        std::mutex mutex;                   ///< Guards the queue.
        detail::Owned<brevint_queue> queue; ///< Made for the first transfer.
    };

    State& TheState() const {
        return m_state ? *m_state : throw std::logic_error("brevint: there is no client");
    }
    brevint_client* Handle() const { return TheState().client.get(); }
    detail::Call NewCall(const CallOptions& options) const { return {Handle(), options}; }

    /// Null: no memory.
    brevint_queue* Queue() {
        State& state = TheState();
        const std::lock_guard lock(state.mutex);
        if (!state.queue) {
            const TransferSettings& chosen = state.settings.transfers;
            const auto count = [](std::chrono::milliseconds time) {
                return static_cast<std::uint32_t>(time.count());
            };
            brevint_queue_settings settings = detail::Initial(brevint_queue_settings_init);
            settings.concurrent = chosen.concurrent;
            settings.attempts = chosen.attempts;
            settings.first_pause = count(chosen.firstPause);
            settings.longest_pause = count(chosen.longestPause);
            settings.stall_limit = count(chosen.stallLimit);
            settings.reply_limit = count(chosen.replyLimit);
            state.queue.reset(brevint_queue_new(state.client.get(), &settings));
        }
        return state.queue.get();
    }

    /// Has `start` begin a transfer of what the request describes, once the item is known.
    template <class Kind, class Callback, class Request, class Start>
    Kind Begin(const ItemRef& item, const CallOptions& options, Callback onChange, Request& request,
               Start start) {
        detail::Call call = NewCall(options);
        const std::optional<ItemRef> found = call.Resolve(item);
        if (!found) {
            return {};
        }
        const auto watcher = std::make_shared<typename Kind::Watcher>(std::move(onChange),
                                                                      TheState().settings.executor);
        request.listener = Kind::Watcher::Listen;
        request.user = watcher.get();
        brevint_queue* const queue = Queue();
        auto* const begun = queue ? start(*found, queue) : nullptr;
        call.Conclude(begun ? Error() : detail::ToError(nullptr));
        return begun ? Kind(watcher, begun) : Kind();
    }

    Transfer Send(const std::filesystem::path& file, const ItemRef& item,
                  const char* brevint_upload::*target, UploadOptions how,
                  const CallOptions& options) {
        const std::string path = detail::Utf8(file);
        brevint_upload request = detail::Initial(brevint_upload_init);
        request.local_path = path.c_str();
        return Begin<Transfer>(item, options, std::move(how.onChange), request,
                               [&](const ItemRef& found, brevint_queue* queue) {
                                   request.*target = detail::Terminated(found.Id());
                                   return brevint_queue_upload(queue, &request);
                               });
    }

    /// Begins to move a folder, in the direction of `start`.
    template <class Start>
    TransferGroup Move(const ItemRef& folder, const std::filesystem::path& local, Start start,
                       FolderOptions how, const CallOptions& options) {
        const std::string path = detail::Utf8(local);
        brevint_folder_transfer request = detail::Initial(brevint_folder_transfer_init);
        request.local_path = path.c_str();
        request.existing = static_cast<std::int32_t>(how.existing);
        request.plan_only = how.planOnly ? 1 : 0;
        request.keep_times = how.keepTimes ? 1 : 0;
        request.durable = how.durable ? 1 : 0;
        request.keeps_part = how.keepsPart ? 1 : 0;
        return Begin<TransferGroup>(folder, options, std::move(how.onChange), request,
                                    [&](const ItemRef& found, brevint_queue* queue) {
                                        request.folder_id = detail::Terminated(found.Id());
                                        return start(queue, &request);
                                    });
    }

    std::unique_ptr<State> m_state;
};

} // namespace brevint
