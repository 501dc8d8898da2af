#pragma once

/// From the first call on, the library's code stays loaded. A thread of the library or of the
/// platform may come back to it when the application has long deleted everything and freed the
/// library.
void KeepCodeLoaded();
