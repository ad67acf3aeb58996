/// The MFC-compatible layer: objects with run-time classes, files, archives and exceptions.
///
/// Stands where MFC's header of the same name stands, with the same names, numbers and stored
/// bytes, so that sources written against MFC compile unchanged.
#pragma once

#include "AfxArchive.h"
#include "AfxExceptions.h"
#include "AfxExport.h"
#include "AfxFile.h"
#include "AfxObject.h"
#include "AfxString.h"
#include "AfxTypes.h"
