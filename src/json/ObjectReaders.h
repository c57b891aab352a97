// The readers of all records.
#pragma once

#include "json/ContractReader.h"
#include "json/ContractorReader.h"
#include "json/DeviceReader.h"
#include "json/DeviceUserReader.h"
#include "json/DomainReader.h"
#include "json/EventReader.h"
#include "json/LocaleReader.h"
#include "json/LocationReader.h"
#include "json/OrganizationReader.h"
#include "json/PersonReader.h"
#include "json/SectionReader.h"
#include "json/SiteReader.h"
#include "json/UserReader.h"
#include "json/ZoneReader.h"
