// Status texts: one constant English sentence for every code the library returns.
#include "own.h"

VNX_API const char* vnxcvGetStatusString(vnxStatus status) noexcept {
  switch (status) {
    case vnxStatusOk: return "No error";
    case vnxStatusDivByZero: return "Warning: the denominator of a relative norm is zero";
    case vnxStatusSizeOverflow: return "Warning: the buffer size exceeds 2147483647 bytes";
    case vnxStatusTooManyLines: return "Warning: more lines qualified than the caller can take";
    case vnxStatusSymKernelExpected: return "Warning: the kernel is not symmetric; its left half was mirrored";
    case vnxStatusLineError: return "The line walker could not be set up for the two end points";
    case vnxStatusBadArg: return "A parameter is outside its allowed set or range";
    case vnxStatusBadSize: return "A size is below its minimum or too large";
    case vnxStatusNullPtr: return "A required pointer is null";
    case vnxStatusNoMemory: return "Not enough memory for a state or work buffer";
    case vnxStatusOutOfRange: return "A point or value is out of range";
    case vnxStatusBadDataType: return "The element type is not supported";
    case vnxStatusBadStep: return "A row step is smaller than its row's bytes";
    case vnxStatusBadMaskSize: return "The mask size is neither 3x3 nor 5x5";
    case vnxStatusBadAnchor: return "The anchor lies outside the mask";
    case vnxStatusBadCoi: return "The channel of interest is not 1, 2 or 3";
    case vnxStatusBadChannels: return "The channel count is neither 1 nor 3";
    case vnxStatusBadMetric: return "A distance metric is not positive";
    case vnxStatusStepNotMultiple: return "A row step is not a multiple of the element size";
    case vnxStatusNotSupportedMode: return "The mode is not supported";
  }
  return "Unknown status code";
}
