#include "brevint/CheckInOutResponse.h"
#include "brevint/DeleteResponse.h"
#include "brevint/IdentityResponse.h"
#include "brevint/PathResponse.h"
#include "brevint/TemplateInfo.h"
#include "brevint/TemplateResponse.h"
#include "brevint/UserRole.h"
#include "brevint/VersionInfoResponse.h"
#include "c/Common.h"
#include "calls/Calls.h"
#include "calls/Items.h"
#include "calls/Names.h"
#include "calls/ServiceAddress.h"
#include "calls/Session.h"
#include "requests/CheckInOutRequestInfo.h"
#include "requests/DeleteRequestInfo.h"
#include "requests/PathRequestInfo.h"
#include "requests/SignInForms.h"
#include "requests/TemplateRequestInfo.h"
#include "requests/VersionInfoRequestInfo.h"
#include "responses/FolderListing.h"
#include "support/HttpEscape.h"
#include "support/IsoTime.h"
#include "transport/StreamingExchange.h"

#include <exception>
#include <new>
#include <vector>

using namespace c;
using calls::CallContext;
using calls::Effect;
using calls::Failure;

struct brevint_cancellation {
    std::shared_ptr<calls::Cancellation> cancellation = std::make_shared<calls::Cancellation>();
};

struct brevint_items {
    FolderListing listing;
};

struct brevint_templates {
    struct Record {
        std::string id, key, name, description, category, createdBy, created;
    };
    std::vector<Record> records;
};

namespace {

static_assert(BREVINT_ROLE_ADMINISTRATOR == UserRole::Administrator &&
              BREVINT_ROLE_USER == UserRole::User);
static_assert(BREVINT_FAILURE_OUT_OF_MEMORY == static_cast<int>(calls::FailureKind::OutOfMemory));

calls::CallLimits Limits(const brevint_call* call) {
    const brevint_call given = Complete(call, brevint_call_init);
    calls::CallLimits limits;
    if (given.cancellation) {
        limits.cancellation = given.cancellation->cancellation;
    }
    if (given.milliseconds != 0) {
        limits.time = std::chrono::milliseconds(given.milliseconds);
    }
    return limits;
}

/// Carries out a call whose work fills `result`, which it shares with its caller, and hands that to
/// `store` after a success.
template <class Result, class Function, class Store>
std::int32_t Call(const brevint_client* client, const brevint_call* call, Effect effect,
                  brevint_error** error, Function work, Store store) {
    return Guarded(error, [&] {
        const auto result = std::make_shared<Result>();
        Failure failure = calls::RunBounded(
            client->service, Limits(call), effect,
            [result, work = std::move(work)](const CallContext& at) { return work(at, *result); });
        if (!failure) {
            store(*result);
        }
        return failure;
    });
}

/// The same for a call that tells nothing but whether it succeeded.
template <class Function>
std::int32_t Call(const brevint_client* client, const brevint_call* call, Effect effect,
                  brevint_error** error, Function work) {
    struct Nothing {};
    return Call<Nothing>(
        client, call, effect, error,
        [work = std::move(work)](const CallContext& at, Nothing&) { return work(at); },
        [](Nothing&) {});
}

/// A call about one item, with a description that takes the service's address and the identifier.
template <class Response, class Describe>
std::int32_t CallOnItem(const brevint_client* client, const char* item_id, const brevint_call* call,
                        brevint_error** error, Describe describe) {
    return Call(client, call, Effect::Change, error,
                [id = Wide(item_id), describe](const CallContext& at) {
                    if (!calls::IsIdentifier(id)) {
                        return calls::InvalidIdentifier(id);
                    }
                    Response response;
                    return calls::Ask(at, describe(at.service.Url(), id), response);
                });
}

std::int64_t Time(std::string_view text) {
    return ParseIsoTime(text).value_or(BREVINT_UNKNOWN_TIME);
}

/// An identity with the texts that it points to.
struct OwnedIdentity {
    brevint_identity identity = {};
    std::string name, portal;
};

/// A job with the text that it points to.
struct OwnedJob {
    brevint_job job = {};
    std::string itemId;
};

/// Versions with what they point to.
struct OwnedVersions {
    brevint_versions versions = {};
    std::string service;
    std::vector<std::string> applications;
    std::vector<const char*> pointers;
};

} // namespace

const char* brevint_version(void) {
    return BREVINT_VERSION;
}

brevint_cancellation* brevint_cancellation_new(void) {
    try {
        return std::make_unique<brevint_cancellation>().release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void brevint_cancellation_cancel(brevint_cancellation* cancellation) {
    cancellation->cancellation->Cancel();
}

void brevint_cancellation_free(brevint_cancellation* cancellation) {
    delete cancellation;
}

void brevint_call_init(brevint_call* call) {
    Clear(call);
    call->milliseconds = static_cast<std::uint32_t>(calls::CallLimits().time.count());
}

void brevint_client_settings_init(brevint_client_settings* settings) {
    Clear(settings);
}

brevint_client* brevint_client_new(const char* service_url, const brevint_client_settings* settings,
                                   brevint_error** error) {
    const brevint_client_settings given = Complete(settings, brevint_client_settings_init);
    std::unique_ptr<brevint_client> client;
    Guarded(error, [&] {
        std::string url(View(service_url));
        const bool insecureHttp = given.insecure_http != 0;
        if (const std::string fault = calls::FaultOf(url, insecureHttp); !fault.empty()) {
            return calls::Invalid(Utf8::ToWide(
                "\"" + url + "\" cannot be used as the address of a service: " + fault));
        }
        url.erase(url.find_last_not_of('/') + 1);
        client = std::make_unique<brevint_client>();
        client->insecureHttp = insecureHttp;
        client->service = std::make_shared<calls::Service>(
            Utf8::ToWide(url), std::make_shared<StreamingExchangeFactory>());
        return Failure();
    });
    return client.release();
}

void brevint_client_free(brevint_client* client) {
    delete client;
}

int32_t brevint_sign_in(brevint_client* client, const char* user, const char* password,
                        const brevint_call* call, brevint_error** error) {
    return Call(client, call, Effect::None, error,
                [user = Wide(user), password = Wide(password),
                 insecureHttp = client->insecureHttp](const CallContext& at) {
                    return calls::SignIn(at, user, password, insecureHttp);
                });
}

int32_t brevint_sign_out(brevint_client* client, const brevint_call* call, brevint_error** error) {
    const std::int32_t done = Call(client, call, Effect::Change, error, calls::SignOut);
    try {
        calls::ForgetSession(*client->service);
    } catch (const std::bad_alloc&) {
        return done ? Report(calls::OutOfMemory(), error) : 0;
    }
    return done;
}

int32_t brevint_session_save(const brevint_client* client, char** session, brevint_error** error) {
    return Guarded(error, [&] {
        const std::wstring cookies = calls::SessionCookies(*client->service);
        if (!HoldSession(cookies)) {
            return calls::NotSignedIn();
        }
        *session = MakeText(Utf8::ToNarrow(cookies));
        return Failure();
    });
}

int32_t brevint_session_restore(brevint_client* client, const char* session,
                                brevint_error** error) {
    return Guarded(error, [&] {
        const std::wstring cookies = Wide(session);
        if (!HoldSession(cookies)) {
            return calls::Invalid(L"The text is no session.");
        }
        calls::RestoreSession(*client->service, cookies);
        return Failure();
    });
}

int32_t brevint_ask_identity(const brevint_client* client, const brevint_call* call,
                             brevint_identity** identity, brevint_error** error) {
    return Call<CIdentityResponse>(
        client, call, Effect::None, error, calls::AskIdentity, [&](CIdentityResponse& response) {
            auto owned = std::make_unique<OwnedIdentity>();
            owned->name = Utf8::ToNarrow(response.GetUsername());
            owned->portal = Utf8::ToNarrow(response.GetIdentifyingPartyUrl());
            Clear(&owned->identity);
            owned->identity.name = owned->name.c_str();
            owned->identity.portal_url = owned->portal.c_str();
            owned->identity.role = response.GetUserRole();
            *identity = &owned.release()->identity;
        });
}

void brevint_identity_free(brevint_identity* identity) {
    delete reinterpret_cast<OwnedIdentity*>(identity); // of which it is the first member
}

int32_t brevint_ask_versions(const brevint_client* client, const brevint_call* call,
                             brevint_versions** versions, brevint_error** error) {
    return Call<CVersionInfoResponse>(
        client, call, Effect::None, error,
        [](const CallContext& at, CVersionInfoResponse& response) {
            return calls::Ask(at, CVersionInfoRequestInfo(at.service.Url()), response);
        },
        [&](const CVersionInfoResponse& response) {
            auto owned = std::make_unique<OwnedVersions>();
            owned->service = Utf8::ToNarrow(response.GetSystemVersion());
            for (const std::wstring& version : response.GetCompatableDesktopVersions()) {
                owned->applications.push_back(Utf8::ToNarrow(version));
            }
            for (const std::string& version : owned->applications) {
                owned->pointers.push_back(version.c_str());
            }
            Clear(&owned->versions);
            owned->versions.service = owned->service.c_str();
            owned->versions.applications = owned->pointers.data();
            owned->versions.application_count = owned->pointers.size();
            *versions = &owned.release()->versions;
        });
}

void brevint_versions_free(brevint_versions* versions) {
    delete reinterpret_cast<OwnedVersions*>(versions); // of which they are the first member
}

void brevint_template_init(brevint_template* record) {
    Clear(record);
}

int32_t brevint_ask_templates(const brevint_client* client, const char* type_key,
                              const brevint_call* call, brevint_templates** templates,
                              brevint_error** error) {
    const std::wstring key = Wide(type_key);
    return Call<CTemplateResponse>(
        client, call, Effect::None, error,
        [key = BaseHlpr::HttpEscapeW(key.data(), static_cast<unsigned>(key.size()))](
            const CallContext& at, CTemplateResponse& response) {
            return calls::Ask(at, CTemplateRequestInfo(at.service.Url(), key), response);
        },
        [&](CTemplateResponse& response) {
            std::vector<CTemplateInfo*> made;
            response.GetTemplateMetadata(made);
            const std::vector<std::unique_ptr<CTemplateInfo>> infos(made.begin(), made.end());
            if (!response.GetSucceeded()) {
                throw std::bad_alloc();
            }
            auto result = std::make_unique<brevint_templates>();
            for (const auto& info : infos) {
                result->records.push_back(
                    {Utf8::ToNarrow(info->GetId()), Utf8::ToNarrow(info->GetKey()),
                     Utf8::ToNarrow(info->GetName()), Utf8::ToNarrow(info->GetDescription()),
                     Utf8::ToNarrow(info->GetCategory()), Utf8::ToNarrow(info->GetCreatedBy()),
                     Utf8::ToNarrow(info->GetCreated())});
            }
            *templates = result.release();
        });
}

size_t brevint_templates_count(const brevint_templates* templates) {
    return templates->records.size();
}

int32_t brevint_templates_get(const brevint_templates* templates, size_t index,
                              brevint_template* record) {
    if (index >= templates->records.size()) {
        return 0;
    }
    const brevint_templates::Record& known = templates->records[index];
    brevint_template result;
    brevint_template_init(&result);
    result.id = known.id.c_str();
    result.key = known.key.c_str();
    result.name = known.name.c_str();
    result.description = known.description.c_str();
    result.category = known.category.c_str();
    result.created_by = known.createdBy.c_str();
    result.created = known.created.c_str();
    result.created_time = Time(known.created);
    Store(result, record);
    return 1;
}

void brevint_templates_free(brevint_templates* templates) {
    delete templates;
}

void brevint_item_init(brevint_item* item) {
    Clear(item);
    item->bytes = BREVINT_UNKNOWN_SIZE;
    item->created_time = BREVINT_UNKNOWN_TIME;
    item->modified_time = BREVINT_UNKNOWN_TIME;
}

size_t brevint_items_count(const brevint_items* items) {
    return items->listing.Count();
}

int32_t brevint_items_get(const brevint_items* items, size_t index, brevint_item* item) {
    if (index >= items->listing.Count()) {
        return 0;
    }
    const FolderItemView known = items->listing.At(index);
    brevint_item result;
    brevint_item_init(&result);
    result.id = known.id.data();
    result.parent_id = known.parentId.data();
    result.owner_id = known.ownerId.data();
    result.name = known.name.data();
    result.description = known.description.data();
    result.type = known.typeDescription.data();
    result.kind = static_cast<std::int32_t>(calls::KindOf(known));
    result.bytes = calls::BytesOf(known).value_or(BREVINT_UNKNOWN_SIZE);
    result.created = known.created.data();
    result.modified = known.modified.data();
    result.created_time = Time(known.created);
    result.modified_time = Time(known.modified);
    result.is_locked = known.isLocked ? 1 : 0;
    result.locked_by = known.lockedBy.data();
    result.is_public = known.isPublic ? 1 : 0;
    Store(result, item);
    return 1;
}

void brevint_items_free(brevint_items* items) {
    delete items;
}

int32_t brevint_list(const brevint_client* client, const char* folder_id, const brevint_call* call,
                     brevint_items** items, brevint_error** error) {
    return Call<FolderListing>(
        client, call, Effect::None, error,
        [id = Wide(folder_id)](const CallContext& at, FolderListing& listing) {
            return calls::ListFolder(at, id, listing);
        },
        [&](FolderListing& listing) {
            *items = std::make_unique<brevint_items>(std::move(listing)).release();
        });
}

int32_t brevint_find(const brevint_client* client, const char* folder_id, const char* path,
                     const brevint_call* call, brevint_items** item, brevint_error** error) {
    return Call<FolderListing>(
        client, call, Effect::None, error,
        [id = Wide(folder_id), path = std::string(View(path))](const CallContext& at,
                                                               FolderListing& listing) {
            return calls::Find(at, id, path, listing);
        },
        [&](FolderListing& listing) {
            *item = std::make_unique<brevint_items>(std::move(listing)).release();
        });
}

int32_t brevint_ask_path(const brevint_client* client, const char* item_id,
                         const brevint_call* call, char** path, brevint_error** error) {
    return Call<CPathResponse>(
        client, call, Effect::None, error,
        [id = Wide(item_id)](const CallContext& at, CPathResponse& response) {
            return calls::IsIdentifier(id)
                       ? calls::Ask(at, CPathRequestInfo(at.service.Url(), id), response)
                       : calls::InvalidIdentifier(id);
        },
        [&](const CPathResponse& response) {
            *path = MakeText(Utf8::ToNarrow(response.GetPath()));
        });
}

int32_t brevint_create_folder(const brevint_client* client, const char* parent_id, const char* name,
                              const brevint_call* call, char** folder_id, brevint_error** error) {
    return Call<std::wstring>(
        client, call, Effect::Change, error,
        [parent = Wide(parent_id), name = Wide(name)](const CallContext& at, std::wstring& id) {
            return calls::CreateFolder(at, parent, name, id);
        },
        [&](const std::wstring& id) { *folder_id = MakeText(Utf8::ToNarrow(id)); });
}

int32_t brevint_delete(const brevint_client* client, const char* item_id, const brevint_call* call,
                       brevint_error** error) {
    return CallOnItem<CDeleteResponse>(client, item_id, call, error,
                                       [](const std::wstring& url, const std::wstring& id) {
                                           return CDeleteRequestInfo(url, id);
                                       });
}

int32_t brevint_read(const brevint_client* client, const char* item_id, size_t most,
                     const brevint_call* call, char** bytes, size_t* count, brevint_error** error) {
    return Call<std::vector<char>>(
        client, call, Effect::None, error,
        [id = Wide(item_id), most](const CallContext& at, std::vector<char>& content) {
            return calls::ReadFile(at, id, most, content);
        },
        [&](const std::vector<char>& content) {
            *bytes = MakeText({content.data(), content.size()});
            *count = content.size();
        });
}

int32_t brevint_ask_job(const brevint_client* client, const char* job_id, int32_t of_replacement,
                        const brevint_call* call, brevint_job** job, brevint_error** error) {
    return Call<calls::Job>(
        client, call, Effect::None, error,
        [id = Wide(job_id),
         kind = of_replacement != 0 ? calls::JobKind::Overwrite : calls::JobKind::Upload](
            const CallContext& at, calls::Job& found) {
            return calls::AskJob(at, id, kind, found);
        },
        [&](const calls::Job& found) {
            auto owned = std::make_unique<OwnedJob>();
            owned->itemId = Utf8::ToNarrow(found.itemId);
            Clear(&owned->job);
            owned->job.is_finished = found.isFinished ? 1 : 0;
            owned->job.item_id = owned->itemId.c_str();
            *job = &owned.release()->job;
        });
}

void brevint_job_free(brevint_job* job) {
    delete reinterpret_cast<OwnedJob*>(job); // of which it is the first member
}

int32_t brevint_check_out(const brevint_client* client, const char* item_id,
                          const brevint_call* call, brevint_error** error) {
    return CallOnItem<CCheckInOutResponse>(
        client, item_id, call, error, [](const std::wstring& url, const std::wstring& id) {
            return CCheckInOutRequestInfo(url, id, CCheckInOutRequestInfo::kCheckOut);
        });
}

int32_t brevint_check_in(const brevint_client* client, const char* item_id,
                         const brevint_call* call, brevint_error** error) {
    return CallOnItem<CCheckInOutResponse>(
        client, item_id, call, error, [](const std::wstring& url, const std::wstring& id) {
            return CCheckInOutRequestInfo(url, id, CCheckInOutRequestInfo::kCheckIn);
        });
}
