// The link between internal-error reports and trap frames inside tqbase.
#pragma once

// Called after the handler has seen a report: when a frame of the calling thread is catching,
// control goes to its guard and this does not return.
void i_trapable_captura_error_interno();
