#pragma once

class EndRequest;
struct ImportOptions;

/// Imports all inputs of a call, one after another.
/// \return the exit status
int importDocuments(const ImportOptions &options, const EndRequest &request);
