/** @file
   tqbase: the companion declarations that applications of the code base call themselves. */
#ifndef TQBASE_H
#define TQBASE_H

#include "tqbase/arrays.h"
#include "tqbase/cadenas.h"
#include "tqbase/error_interno.h"
#include "tqbase/ficheros.h"
#include "tqbase/marlsave.h"
#include "tqbase/memoria.h"
#include "tqbase/tipos.h"

#endif
