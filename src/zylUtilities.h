/**
 * @class zylUtilities
 * @brief Small conversions from ParaView's information objects.
 */
#ifndef zylUtilities_h
#define zylUtilities_h

#include "zylExport.h"

class vtkPVDataInformation;
class zylArrayInformation;

class ZYL_EXPORT zylUtilities
{
public:
  /// A new description of the array `arrayName` of `info` (association 0: point data, 1: cell
  /// data); the caller owns it. Null for null arguments or when there is no such array.
  static zylArrayInformation* GetArrayInformation(
    vtkPVDataInformation* info, const char* arrayName, int association);
};

#endif
