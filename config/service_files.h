#pragma once

#include <string>

/// The files beside the program that belong to it or to the service.

/// The file whose owner and permissions new files of the configuration get.
std::string model_file();

/// Whether `path` leads to one of them, by whatever folder, link or further name, or to a free name
/// that one of them would have. No profile may be saved there.
bool is_service_file(const std::string& path);
