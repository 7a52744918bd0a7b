#pragma once

/// Everything that the library offers. Include single headers instead to compile less.

#include <Orvalo3DReader/Check/CheckModel.h>
#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Check/Rules.h>
#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>
#include <Orvalo3DReader/Common/Stopped.h>
#include <Orvalo3DReader/Model/Actuator.h>
#include <Orvalo3DReader/Model/Bounds.h>
#include <Orvalo3DReader/Model/Cubes.h>
#include <Orvalo3DReader/Model/Dump.h>
#include <Orvalo3DReader/Model/FileProperties.h>
#include <Orvalo3DReader/Model/Material.h>
#include <Orvalo3DReader/Model/MaterialRepository.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Model/Piezo.h>
#include <Orvalo3DReader/Model/PiezoData.h>
#include <Orvalo3DReader/Model/Point.h>
#include <Orvalo3DReader/Model/RecordRange.h>
#include <Orvalo3DReader/Model/Samples.h>
#include <Orvalo3DReader/Model/Sensor.h>
#include <Orvalo3DReader/Model/Set.h>
#include <Orvalo3DReader/Model/SharedProperties.h>
#include <Orvalo3DReader/Model/Table.h>
#include <Orvalo3DReader/Reader/InputPlace.h>
#include <Orvalo3DReader/Reader/ReadError.h>
#include <Orvalo3DReader/Reader/ReadModel.h>
#include <Orvalo3DReader/Reader/ReadOptions.h>
#include <Orvalo3DReader/Reader/ReadResults.h>
#include <Orvalo3DReader/Reader/Reader.h>
#include <Orvalo3DReader/Reader/ResultsReader.h>
#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>
