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
#include <initializer_list>
#include <iterator>
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

calls::CallLimits LimitsOf(const brevint_call* call) {
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

/// What a call has been given, in the library's form.
using Texts = std::vector<std::wstring>;

/// Carries out a call: `work` takes the given texts and fills `result`, which it shares with its
/// caller. After a success `store` takes that.
template <class Result, class Function, class Store>
std::int32_t Call(const brevint_client* client, std::initializer_list<const char*> given,
                  const brevint_call* call, Effect effect, brevint_error** error, Function work,
                  Store store) {
    return Guarded(error, [&] {
        Texts texts;
        std::ranges::transform(given, std::back_inserter(texts), Wide);
        const auto result = std::make_shared<Result>();
        Failure failure =
            calls::RunBounded(client->service, LimitsOf(call), effect,
                              [result, work, texts = std::move(texts)](const CallContext& at) {
                                  return work(at, texts, *result);
                              });
        if (!failure) {
            store(*result);
        }
        return failure;
    });
}

/// The same for a call that tells nothing but whether it succeeded.
template <class Function>
std::int32_t Call(const brevint_client* client, std::initializer_list<const char*> given,
                  const brevint_call* call, Effect effect, brevint_error** error, Function work) {
    struct Nothing {};
    return Call<Nothing>(
        client, given, call, effect, error,
        [work](const CallContext& at, const Texts& texts, Nothing&) { return work(at, texts); },
        [](Nothing&) {});
}

/// A call about one item, with a description that takes the service's address and the identifier.
template <class Response, class Describe>
std::int32_t CallOnItem(const brevint_client* client, const char* item_id, const brevint_call* call,
                        brevint_error** error, Describe describe) {
    return Call(client, {item_id}, call, Effect::Change, error,
                [describe](const CallContext& at, const Texts& texts) {
                    if (!calls::IsIdentifier(texts[0])) {
                        return calls::InvalidIdentifier(texts[0]);
                    }
                    Response response;
                    return calls::Ask(at, describe(at.service.Url(), texts[0]), response);
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

void brevint_call_init(brevint_call* call, size_t size) {
    auto defaults = Blank<brevint_call>();
    defaults.milliseconds = static_cast<std::uint32_t>(calls::CallLimits().time.count());
    Initialise(defaults, call, size);
}

void brevint_client_settings_init(brevint_client_settings* settings, size_t size) {
    Initialise<brevint_client_settings>({}, settings, size);
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
    return Call(client, {user, password}, call, Effect::None, error,
                [insecureHttp = client->insecureHttp](const CallContext& at, const Texts& texts) {
                    return calls::SignIn(at, texts[0], texts[1], insecureHttp);
                });
}

int32_t brevint_sign_out(brevint_client* client, const brevint_call* call, brevint_error** error) {
    const std::int32_t done =
        Call(client, {}, call, Effect::Change, error,
             [](const CallContext& at, const Texts&) { return calls::SignOut(at); });
    try {
        calls::ForgetSession(*client->service);
    } catch (const std::exception&) {
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
        client, {}, call, Effect::None, error,
        [](const CallContext& at, const Texts&, CIdentityResponse& response) {
            return calls::AskIdentity(at, response);
        },
        [&](CIdentityResponse& response) {
            auto owned = std::make_unique<OwnedIdentity>();
            owned->name = Utf8::ToNarrow(response.GetUsername());
            owned->portal = Utf8::ToNarrow(response.GetIdentifyingPartyUrl());
            owned->identity = Blank<brevint_identity>();
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
        client, {}, call, Effect::None, error,
        [](const CallContext& at, const Texts&, CVersionInfoResponse& response) {
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
            owned->versions = Blank<brevint_versions>();
            owned->versions.service = owned->service.c_str();
            owned->versions.applications = owned->pointers.data();
            owned->versions.application_count = owned->pointers.size();
            *versions = &owned.release()->versions;
        });
}

void brevint_versions_free(brevint_versions* versions) {
    delete reinterpret_cast<OwnedVersions*>(versions); // of which they are the first member
}

void brevint_template_init(brevint_template* record, size_t size) {
    Initialise<brevint_template>({}, record, size);
}

int32_t brevint_ask_templates(const brevint_client* client, const char* type_key,
                              const brevint_call* call, brevint_templates** templates,
                              brevint_error** error) {
    return Call<CTemplateResponse>(
        client, {type_key}, call, Effect::None, error,
        [](const CallContext& at, const Texts& texts, CTemplateResponse& response) {
            const std::wstring key =
                BaseHlpr::HttpEscapeW(texts[0].data(), static_cast<unsigned>(texts[0].size()));
            return calls::Ask(at, CTemplateRequestInfo(at.service.Url(), key), response);
        },
        [&](CTemplateResponse& response) {
            std::vector<CTemplateInfo*> made;
            response.GetTemplateMetadata(made);
            std::vector<std::unique_ptr<CTemplateInfo>> infos;
            try {
                infos.reserve(made.size());
            } catch (const std::bad_alloc&) {
                std::ranges::for_each(made, std::default_delete<CTemplateInfo>());
                throw;
            }
            for (CTemplateInfo* const info : made) {
                infos.emplace_back(info);
            }
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
    brevint_template result = Blank<brevint_template>();
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

void brevint_item_init(brevint_item* item, size_t size) {
    auto defaults = Blank<brevint_item>();
    defaults.bytes = BREVINT_UNKNOWN_SIZE;
    defaults.created_time = BREVINT_UNKNOWN_TIME;
    defaults.modified_time = BREVINT_UNKNOWN_TIME;
    Initialise(defaults, item, size);
}

size_t brevint_items_count(const brevint_items* items) {
    return items->listing.Count();
}

int32_t brevint_items_get(const brevint_items* items, size_t index, brevint_item* item) {
    if (index >= items->listing.Count()) {
        return 0;
    }
    const FolderItemView known = items->listing.At(index);
    brevint_item result = Blank<brevint_item>();
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
        client, {folder_id}, call, Effect::None, error,
        [](const CallContext& at, const Texts& texts, FolderListing& listing) {
            return calls::ListFolder(at, texts[0], listing);
        },
        [&](FolderListing& listing) {
            *items = std::make_unique<brevint_items>(std::move(listing)).release();
        });
}

int32_t brevint_find(const brevint_client* client, const char* folder_id, const char* path,
                     const brevint_call* call, brevint_items** item, brevint_error** error) {
    return Call<FolderListing>(
        client, {folder_id, path}, call, Effect::None, error,
        [](const CallContext& at, const Texts& texts, FolderListing& listing) {
            return calls::Find(at, texts[0], Utf8::ToNarrow(texts[1]), listing);
        },
        [&](FolderListing& listing) {
            *item = std::make_unique<brevint_items>(std::move(listing)).release();
        });
}

int32_t brevint_ask_path(const brevint_client* client, const char* item_id,
                         const brevint_call* call, char** path, brevint_error** error) {
    return Call<CPathResponse>(
        client, {item_id}, call, Effect::None, error,
        [](const CallContext& at, const Texts& texts, CPathResponse& response) {
            return calls::IsIdentifier(texts[0])
                       ? calls::Ask(at, CPathRequestInfo(at.service.Url(), texts[0]), response)
                       : calls::InvalidIdentifier(texts[0]);
        },
        [&](const CPathResponse& response) {
            *path = MakeText(Utf8::ToNarrow(response.GetPath()));
        });
}

int32_t brevint_create_folder(const brevint_client* client, const char* parent_id, const char* name,
                              const brevint_call* call, char** folder_id, brevint_error** error) {
    return Call<std::wstring>(
        client, {parent_id, name}, call, Effect::Change, error,
        [](const CallContext& at, const Texts& texts, std::wstring& id) {
            return calls::CreateFolder(at, texts[0], texts[1], id);
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
        client, {item_id}, call, Effect::None, error,
        [most](const CallContext& at, const Texts& texts, std::vector<char>& content) {
            return calls::ReadFile(at, texts[0], most, content);
        },
        [&](const std::vector<char>& content) {
            *bytes = MakeText({content.data(), content.size()});
            *count = content.size();
        });
}

int32_t brevint_ask_job(const brevint_client* client, const char* job_id, int32_t of_replacement,
                        const brevint_call* call, brevint_job** job, brevint_error** error) {
    return Call<calls::Job>(
        client, {job_id}, call, Effect::None, error,
        [kind = of_replacement != 0 ? calls::JobKind::Overwrite : calls::JobKind::Upload](
            const CallContext& at, const Texts& texts, calls::Job& found) {
            return calls::AskJob(at, texts[0], kind, found);
        },
        [&](const calls::Job& found) {
            auto owned = std::make_unique<OwnedJob>();
            owned->itemId = Utf8::ToNarrow(found.itemId);
            owned->job = Blank<brevint_job>();
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
