// A downconverter library that has the 18 entry points and no other, or lacks one of them (NCO). Binding looks names up
// and calls none of them.
extern "C" {
void Advanced() {}
void AllocInstance() {}
void Closedown() {}
void Diagnostics() {}
void DisableFractionalResampler() {}
void DownconvertInit() {}
void DownconvertRateIn() {}
void DownconvertRateOut() {}
void DownconvertRun() {}
void FirstStageExclude() {}
void FirstStageOnly() {}
void FractionalInit() {}
void FractionalProcess() {}
void IsAdvanced() {}
#ifdef WITH_NCO
void NCO() {}
#endif
void PartionedFFTInit() {}
void PartionedFFTProcess() {}
void ReleaseInstance() {}
}
