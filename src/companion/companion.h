// Every companion component the libraries of the code base call, in one include.
#pragma once

#include "tqbase.h"

#include "arrays.h"
#include "block_batches.h"
#include "byte_strings.h"
#include "directory.h"
#include "files.h"
#include "formatter.h"
#include "hex_digits.h"
#include "lexer.h"
#include "number_conversion.h"
#include "stdc_wrapper.h"
#include "text_output.h"
#include "trap_frames.h"
#include "traspaso.h"
#include "unicode.h"
#include "verifica.h"
#include "wide_strings.h"
