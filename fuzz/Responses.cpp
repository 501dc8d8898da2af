#include "fuzz/Fuzz.h"
#include "support/RootElement.h"
#include "tests/support/ResponseKinds.h"

using namespace brevint::test;

/// The name of a kind of response and its status, and from the next line on the reply.
void Fuzz(std::string_view input) {
    const std::string_view line = TakeLine(input);
    const ResponseKind* const kind = FindKind(line.substr(0, line.find(' ')));
    if (!kind) {
        return;
    }
    const auto response = kind->make();
    response->SetServerResponse({input.begin(), input.end()}, line.ends_with(" 500") ? 500 : 200);
    Require(response->GetSucceeded() == (response->GetErrorCode() == ErrorCode::Success));
    Require(kind->detail(*response) == kind->detail(*response));
    response->ParseServerResponse();
    HasRootElement(input, "ResponseData");
}
