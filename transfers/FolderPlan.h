#pragma once

#include "calls/BoundedCall.h"
#include "transfers/FolderTree.h"
#include "transfers/Transfer.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct FolderItemView;
struct LocalItem;

namespace transfers {

/// What is moved, and where to.
struct FolderRequest {
    std::wstring folderId;
    std::filesystem::path localPath;
    Existing existing = Existing::Refuse;
    bool planOnly = false;   ///< Nothing is moved or made.
    bool keepsTimes = false; ///< Downloaded files get the times of their items.
    bool durable = false;    ///< As in DownloadRequest.
    bool keepsPart = false;  ///< As in DownloadRequest.
};

/// One direction of moving folders: how to find out what is to be done, and how to do it.
class FolderPlan {
public:
    explicit FolderPlan(FolderRequest request) : m_request(std::move(request)) {}
    FolderPlan(const FolderPlan&) = delete;
    FolderPlan& operator=(const FolderPlan&) = delete;
    virtual ~FolderPlan() = default;

    const FolderRequest& Request() const { return m_request; }

    virtual FolderEntry Root() const = 0;
    /// Says what becomes of each thing that a folder of the tree holds.
    virtual calls::Failure Explore(const calls::CallContext& at, const FolderTree& tree,
                                   std::size_t folder, std::vector<FolderEntry>& content) const = 0;
    /// Makes a folder whose parent has been made, and tells the identifier of its item if it is at
    /// the service.
    virtual calls::Failure MakeFolder(const calls::CallContext& at, const FolderTree& tree,
                                      std::size_t folder, std::string& itemId) const = 0;
    /// What moves a file.
    virtual std::shared_ptr<Transfer> MakeTransfer(const std::shared_ptr<const Service>& service,
                                                   const FolderTree& tree, std::size_t file,
                                                   TransferListener listener) const = 0;
    /// A file has been moved.
    virtual void OnArrived(const FolderTree&, std::size_t) const {}

protected:
    /// Decides about a file that is at the destination already.
    void JudgeExisting(FolderEntry& file, std::uint64_t bytesThere,
                       std::optional<std::int64_t> modifiedThere) const;

private:
    const FolderRequest m_request;
};

/// The content of a folder of the service, into a local one.
class DownloadPlan final : public FolderPlan {
public:
    using FolderPlan::FolderPlan;

    FolderEntry Root() const override;
    calls::Failure Explore(const calls::CallContext& at, const FolderTree& tree, std::size_t folder,
                           std::vector<FolderEntry>& content) const override;
    calls::Failure MakeFolder(const calls::CallContext& at, const FolderTree& tree,
                              std::size_t folder, std::string& itemId) const override;
    std::shared_ptr<Transfer> MakeTransfer(const std::shared_ptr<const Service>& service,
                                           const FolderTree& tree, std::size_t file,
                                           TransferListener listener) const override;
    void OnArrived(const FolderTree& tree, std::size_t file) const override;

private:
    void JudgePlace(FolderEntry& entry, const LocalItem& there) const;
};

/// The content of a local folder, into one of the service.
class UploadPlan final : public FolderPlan {
public:
    using FolderPlan::FolderPlan;

    FolderEntry Root() const override;
    calls::Failure Explore(const calls::CallContext& at, const FolderTree& tree, std::size_t folder,
                           std::vector<FolderEntry>& content) const override;
    calls::Failure MakeFolder(const calls::CallContext& at, const FolderTree& tree,
                              std::size_t folder, std::string& itemId) const override;
    std::shared_ptr<Transfer> MakeTransfer(const std::shared_ptr<const Service>& service,
                                           const FolderTree& tree, std::size_t file,
                                           TransferListener listener) const override;

private:
    void JudgePlace(FolderEntry& entry, const std::optional<FolderItemView>& there) const;
};

} // namespace transfers
