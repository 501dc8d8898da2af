#include "cli/output/Failure.h"

#include "cli/output/Paths.h"

#include <filesystem>
#include <new>

namespace brevint::cli {

Failure CurrentFailure() {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::filesystem::filesystem_error& error) {
        return LocalFailure("\"" + PathToUtf8(error.path1()) + "\" cannot be used", error.code());
    } catch (const std::system_error& error) {
        return LocalFailure("The system refused", error.code());
    } catch (const std::bad_alloc&) {
        return Failure(ExitCode::LocalFile, "There is not enough memory.");
    }
}

} // namespace brevint::cli
