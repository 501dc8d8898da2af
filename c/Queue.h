#pragma once

// What transfers and groups of them share.

#include "c/Common.h"
#include "transfers/TransferQueue.h"

#include <memory>
#include <string>

struct brevint_queue {
    std::shared_ptr<const transfers::Service> service;
    std::shared_ptr<transfers::TransferQueue> queue;
};

namespace c {

/// The texts of an outcome.
struct OutcomeTexts {
    explicit OutcomeTexts(const transfers::TransferOutcome& outcome);

    std::string text, serverMessage, localPath, itemId, jobId;
};

/// An outcome whose texts are these.
brevint_outcome ToC(const transfers::TransferOutcome& outcome, transfers::TransferState state,
                    const OutcomeTexts& texts);

} // namespace c
