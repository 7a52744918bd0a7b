#pragma once

#include <Orvalo3DReader/Common/Exception.h>

/// The messages of ReaderMessages by their codes.
namespace orvalo {

/// The message of that code, or null.
const ExceptionMessage* FindMessage(int code);

/// Whether reading a model, reading results, or a query of results may end in the message of that code.
bool MayEndModel(int code);
bool MayEndResults(int code);
bool MayEndQuery(int code);

}  // namespace orvalo
