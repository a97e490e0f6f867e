// A downconverter library that lacks one of the 18 entry points (NCO). Binding looks names up and calls none of them.
#define ENTRY_POINT(name)   \
  extern "C" void name() {} \
  static_assert(true)

ENTRY_POINT(Advanced);
ENTRY_POINT(AllocInstance);
ENTRY_POINT(Closedown);
ENTRY_POINT(Diagnostics);
ENTRY_POINT(DisableFractionalResampler);
ENTRY_POINT(DownconvertInit);
ENTRY_POINT(DownconvertRateIn);
ENTRY_POINT(DownconvertRateOut);
ENTRY_POINT(DownconvertRun);
ENTRY_POINT(FirstStageExclude);
ENTRY_POINT(FirstStageOnly);
ENTRY_POINT(FractionalInit);
ENTRY_POINT(FractionalProcess);
ENTRY_POINT(IsAdvanced);
ENTRY_POINT(PartionedFFTInit);
ENTRY_POINT(PartionedFFTProcess);
ENTRY_POINT(ReleaseInstance);
