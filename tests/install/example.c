/* Prints the gravest thing that the usability tests find in a font file. */
#include <Tova/Tova.h>
#include <VornFontTest/VornFontTest.h>

int main(int argc, char** argv) {
  TovaURLRef url = TovaURLCreateWithFilePath(argc > 1 ? argv[1] : "");
  TovaMutableDictionaryRef options = TovaDictionaryCreateMutable();
  TovaDictionarySetValue(options, kVornFontTestSkipDuplicateFontTestOptionKey, kTovaBooleanTrue);
  TovaDictionaryRef report = VornFontTestCreateReport(url, options);
  TovaStringRef text = TovaCopyDescription(TovaDictionaryGetValue(report, kVornFontTestResultKey));
  printf("%s\n", TovaStringGetUTF8(text));
  TovaRelease(text);
  TovaRelease(report);
  TovaRelease(options);
  TovaRelease(url);
  return 0;
}
